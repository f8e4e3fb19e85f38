#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QObject>

#include <functional>

namespace tallyfox {

/// Asks a service without waiting, however long it takes: an answer that comes after all may hold something that must
/// be given back, and a call that is bounded by the bus library loses it. `handle` is called once from the event loop
/// with the answer or the error; never when `keeper` goes first.
void callService(QObject& keeper, const QDBusConnection& bus, const QDBusMessage& call,
                 const std::function<void(const QDBusPendingCall&)>& handle);

/// Calls `lost` when `service` changes hands or ends, and when the bus goes. From the event loop, while `owner` lives.
void watchService(QObject& owner, const QDBusConnection& bus, const QString& service,
                  const std::function<void()>& lost);

} // namespace tallyfox
