#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QObject>

#include <chrono>
#include <functional>
#include <limits>

namespace tallyfox {

/// Emits `disconnected` when the bus connection is lost.
class BusDisconnectWatcher : public QObject {
    Q_OBJECT

public:
    explicit BusDisconnectWatcher(QDBusConnection bus, QObject* parent = nullptr);

Q_SIGNALS:
    void disconnected();
};

inline constexpr std::chrono::milliseconds noTimeout{std::numeric_limits<int>::max()};

/// Calls a service asynchronously. `handle` is called once, from the event loop, with the reply or the error; not if
/// `context` is destroyed first. A call whose reply may hold something that must be given back needs `noTimeout`: the
/// bus library discards a reply that comes after the timeout.
void callService(QObject& context, const QDBusConnection& bus, const QDBusMessage& call,
                 const std::function<void(const QDBusPendingCall&)>& handle,
                 std::chrono::milliseconds timeout = noTimeout);

/// Passes the unique name of the peer that has sent `reply` to a call of `service`, empty if there is none any more. At
/// once where the bus library reports it; Qt 6.8 does not, and the bus is asked who owns `service`, so the caller must
/// watch for a change of owner. `handle` is not called if `context` is destroyed first.
void findReplier(QObject& context, const QDBusConnection& bus, const QDBusMessage& reply, const QString& service,
                 const std::function<void(const QString&)>& handle);

/// Calls `lost`, from the event loop, when `service` changes its owner or ends, and when the bus connection is lost;
/// not if `context` is destroyed first.
void watchService(QObject& context, const QDBusConnection& bus, const QString& service,
                  const std::function<void()>& lost);

} // namespace tallyfox
