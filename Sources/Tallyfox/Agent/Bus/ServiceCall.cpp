#include "Tallyfox/Agent/Bus/ServiceCall.h"

#include "Tallyfox/Agent/Bus/BusEnd.h"

#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

#include <limits>

namespace tallyfox {

void callService(QObject& keeper, const QDBusConnection& bus, const QDBusMessage& call,
                 const std::function<void(const QDBusPendingCall&)>& handle)
{
    if (!bus.isConnected()) { // nobody would ever hear of such a call
        const QDBusError error{QDBusError::Disconnected, QStringLiteral("no bus")};
        QMetaObject::invokeMethod(
            &keeper, [handle, error] { handle(QDBusPendingCall::fromError(error)); }, Qt::QueuedConnection);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, std::numeric_limits<int>::max()), &keeper);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &keeper, [handle](QDBusPendingCallWatcher* finished) {
        finished->deleteLater(); // it is at work still, and would otherwise stay as long as its keeper
        handle(*finished);
    });
}

void watchService(QObject& owner, const QDBusConnection& bus, const QString& service, const std::function<void()>& lost)
{
    // All of it queued: whoever is told may delete the owner, and the watchers with it.
    const auto* watcher = new QDBusServiceWatcher(service, bus, QDBusServiceWatcher::WatchForOwnerChange, &owner);
    QObject::connect(
        watcher, &QDBusServiceWatcher::serviceOwnerChanged, &owner,
        [lost](const QString&, const QString& before) {
            if (!before.isEmpty()) // else it has just been started, perhaps by the call itself
                lost();
        },
        Qt::QueuedConnection);
    const auto* end = new BusEnd(bus, &owner);
    QObject::connect(end, &BusEnd::happened, &owner, lost, Qt::QueuedConnection);
}

} // namespace tallyfox
