#include "Tallyfox/Agent/Bus/ServiceCall.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

namespace tallyfox {

BusDisconnectWatcher::BusDisconnectWatcher(QDBusConnection bus, QObject* parent)
    : QObject(parent)
{
    // The bus library emits this signal itself: no message comes from the bus.
    bus.connect(QString{}, QStringLiteral("/org/freedesktop/DBus/Local"), QStringLiteral("org.freedesktop.DBus.Local"),
                QStringLiteral("Disconnected"), this, SIGNAL(disconnected()));
}

void callService(QObject& context, const QDBusConnection& bus, const QDBusMessage& call,
                 const std::function<void(const QDBusPendingCall&)>& handle, std::chrono::milliseconds timeout)
{
    if (!bus.isConnected()) { // such a call would never finish
        const QDBusError error{QDBusError::Disconnected, QStringLiteral("no bus")};
        QMetaObject::invokeMethod(
            &context, [handle, error] { handle(QDBusPendingCall::fromError(error)); }, Qt::QueuedConnection);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, static_cast<int>(timeout.count())), &context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &context,
                     [handle](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater(); // not at once: it is emitting this signal
                         handle(*finished);
                     });
}

void findReplier(QObject& context, const QDBusConnection& bus, const QDBusMessage& reply, const QString& service,
                 const std::function<void(const QString&)>& handle)
{
    if (!reply.service().isEmpty()) {
        handle(reply.service());
        return;
    }
    const QString busName = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage call =
        QDBusMessage::createMethodCall(busName, QStringLiteral("/"), busName, QStringLiteral("GetNameOwner"));
    call << service;
    callService(context, bus, call, [handle](const QDBusPendingCall& answered) {
        const QDBusPendingReply<QString> owner = answered;
        handle(owner.isValid() ? owner.value() : QString{});
    });
}

void watchService(QObject& context, const QDBusConnection& bus, const QString& service,
                  const std::function<void()>& lost)
{
    // Queued, because `lost` may delete the context, and the watchers with it.
    const auto* watcher = new QDBusServiceWatcher(service, bus, QDBusServiceWatcher::WatchForOwnerChange, &context);
    QObject::connect(
        watcher, &QDBusServiceWatcher::serviceOwnerChanged, &context,
        [lost](const QString&, const QString& before) {
            if (!before.isEmpty()) // else it has just been started, perhaps by the call itself
                lost();
        },
        Qt::QueuedConnection);
    const auto* disconnectWatcher = new BusDisconnectWatcher(bus, &context);
    QObject::connect(disconnectWatcher, &BusDisconnectWatcher::disconnected, &context, lost, Qt::QueuedConnection);
}

} // namespace tallyfox
