#include "Tallyfox/Agent/Desktop/NotificationCenter.h"

#include "Tallyfox/Agent/Bus/ServiceCall.h"

#include <QDBusPendingReply>
#include <QStringList>

#include <utility>

namespace tallyfox {

namespace {

class BusNotificationCenter : public NotificationCenter {
public:
    BusNotificationCenter(QDBusConnection bus, std::chrono::milliseconds timeout)
        : m_bus(std::move(bus))
        , m_timeout(timeout)
    { }

    void requestAuthorization(NotificationOptions /*options*/, Completion completion) override
    {
        // The one method that every version of the protocol has, and that changes nothing on the screen.
        const QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
            QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("GetCapabilities"));
        const auto handle = [completion = std::move(completion)](const QDBusPendingCall& answered) {
            const QDBusPendingReply<QStringList> reply = answered; // an error when the types are wrong
            completion(!reply.isError());
        };
        callService(m_context, m_bus, call, handle, m_timeout);
    }

private:
    QDBusConnection m_bus;
    std::chrono::milliseconds m_timeout;
    QObject m_context; ///< of the pending calls
};

} // namespace

std::unique_ptr<NotificationCenter> makeNotificationCenter(const QDBusConnection& bus,
                                                           std::chrono::milliseconds timeout)
{
    return std::make_unique<BusNotificationCenter>(bus, timeout);
}

} // namespace tallyfox
