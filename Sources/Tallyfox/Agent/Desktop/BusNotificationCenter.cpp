#include "Tallyfox/Agent/Desktop/BusNotificationCenter.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>

#include <utility>

namespace tallyfox {

namespace {

/// The one question that every version of the protocol knows, and that changes nothing on the screen.
QDBusMessage question()
{
    return QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("GetCapabilities"));
}

} // namespace

BusNotificationCenter::BusNotificationCenter(QDBusConnection bus, std::chrono::milliseconds longestWait)
    : m_bus(std::move(bus))
    , m_longestWait(longestWait)
{
    m_refusal.setSingleShot(true);
    connect(&m_refusal, &QTimer::timeout, this, &BusNotificationCenter::refuseWithoutBus);
}

void BusNotificationCenter::refuseWithoutBus()
{
    for (const Completion& completion : std::exchange(m_withoutBus, {}))
        completion(false);
}

void BusNotificationCenter::requestAuthorization(NotificationOptions /*options*/, Completion completion)
{
    if (!m_bus.isConnected()) { // a call would never end
        m_withoutBus.push_back(std::move(completion));
        m_refusal.start();
        return;
    }
    const auto* const answer =
        new QDBusPendingCallWatcher{m_bus.asyncCall(question(), static_cast<int>(m_longestWait.count())), this};
    const auto conclude = [completion = std::move(completion)](QDBusPendingCallWatcher* finished) {
        const QDBusPendingReply<QStringList> reply = *finished; // an error when the types are wrong
        finished->deleteLater(); // it is at work still, and would otherwise stay as long as the center
        completion(!reply.isError());
    };
    connect(answer, &QDBusPendingCallWatcher::finished, this, conclude);
}

std::unique_ptr<NotificationCenter> makeNotificationCenter(const QDBusConnection& bus)
{
    return std::make_unique<BusNotificationCenter>(bus);
}

} // namespace tallyfox
