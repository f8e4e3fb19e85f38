#include "Tallyfox/Agent/KeepAwake/InhibitionRequest.h"

#include "Tallyfox/Agent/Bus/PortalRequest.h"
#include "Tallyfox/Agent/Bus/ServiceCall.h"

#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QPointer>

#include <optional>

namespace tallyfox {

namespace {

constexpr unsigned withoutWindow = 0;
constexpr unsigned suspendFlag = 4; ///< of the session manager and of the portal

/// A service that returns a number for an inhibition, and takes it back to end it.
struct CookieService {
    QString name;
    QString path;
    QString interface;
    QString endMethod;
    QVariantList arguments; ///< of its method "Inhibit"
};

/// Only a running service is asked: starting another desktop's would do more than the user wants.
QDBusMessage makeCall(const CookieService& service, const QString& method)
{
    QDBusMessage call = QDBusMessage::createMethodCall(service.name, service.path, service.interface, method);
    call.setAutoStartService(false);
    return call;
}

QDBusMessage withCookie(QDBusMessage end, unsigned cookie)
{
    return end << cookie;
}

class CookieInhibition : public InhibitionRequest {
public:
    CookieInhibition(QObject& context, const QDBusConnection& bus, const CookieService& service)
        : m_bus(bus)
        , m_end(makeCall(service, service.endMethod))
    {
        QDBusMessage call = makeCall(service, QStringLiteral("Inhibit"));
        call.setArguments(service.arguments);
        watchService(*this, m_bus, service.name, [this] { fail(); });
        const auto handle = [bus, end = m_end, self = QPointer{this}](const QDBusPendingCall& answered) {
            const QDBusPendingReply<unsigned> reply = answered;
            if (reply.isError()) {
                if (self)
                    self->fail();
            } else if (self) {
                self->m_cookie = reply.value();
                self->grant();
            } else {
                bus.send(withCookie(end, reply.value()));
            }
        };
        callService(context, m_bus, call, handle);
    }

    ~CookieInhibition() override
    {
        if (m_cookie)
            m_bus.send(withCookie(m_end, *m_cookie));
    }

private:
    QDBusConnection m_bus;
    QDBusMessage m_end; ///< without the cookie
    std::optional<unsigned> m_cookie;
};

/// In force until the portal's request is closed.
class PortalInhibition : public InhibitionRequest {
public:
    PortalInhibition(QObject& context, const QDBusConnection& bus, const QString& reason)
        : m_request(context, bus, QStringLiteral("Inhibit.Inhibit"), {QString{}, suspendFlag},
                    {{QStringLiteral("reason"), reason}})
    {
        connect(&m_request, &PortalRequest::succeeded, this, &PortalInhibition::grant);
        connect(&m_request, &PortalRequest::failed, this, &PortalInhibition::fail);
    }

private:
    PortalRequest m_request;
};

/// In force while the descriptor from the login manager is open.
class LoginInhibition : public InhibitionRequest {
public:
    LoginInhibition(QObject& context, const QDBusConnection& bus, const QString& reason)
    {
        const QString service = QStringLiteral("org.freedesktop.login1");
        QDBusMessage call =
            QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/login1"),
                                           QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
        call << QStringLiteral("idle") << QStringLiteral("Tallyfox") << reason << QStringLiteral("block");
        call.setAutoStartService(false);
        watchService(*this, bus, service, [this] { fail(); });
        // A reply that comes too late closes the descriptor it brings, which is all that there is to give back.
        callService(context, bus, call, [self = QPointer{this}](const QDBusPendingCall& answered) {
            const QDBusPendingReply<QDBusUnixFileDescriptor> reply = answered;
            if (!self)
                return;
            if (reply.isError() || !reply.value().isValid()) {
                self->fail();
                return;
            }
            self->m_hold = reply.value();
            self->grant();
        });
    }

private:
    QDBusUnixFileDescriptor m_hold;
};

} // namespace

void InhibitionRequest::grant()
{
    QMetaObject::invokeMethod(this, "granted", Qt::QueuedConnection);
}

void InhibitionRequest::fail()
{
    if (m_hasFailed)
        return;
    m_hasFailed = true;
    QMetaObject::invokeMethod(this, "failed", Qt::QueuedConnection);
}

std::unique_ptr<InhibitionRequest> requestPowerManagement(QObject& context, const QDBusConnection& bus,
                                                          const QString& reason)
{
    const CookieService service{QStringLiteral("org.freedesktop.PowerManagement"),
                                QStringLiteral("/org/freedesktop/PowerManagement/Inhibit"),
                                QStringLiteral("org.freedesktop.PowerManagement.Inhibit"),
                                QStringLiteral("UnInhibit"),
                                {QStringLiteral("Tallyfox"), reason}};
    return std::make_unique<CookieInhibition>(context, bus, service);
}

std::unique_ptr<InhibitionRequest> requestSessionManager(QObject& context, const QDBusConnection& bus,
                                                         const QString& reason)
{
    const CookieService service{QStringLiteral("org.gnome.SessionManager"),
                                QStringLiteral("/org/gnome/SessionManager"),
                                QStringLiteral("org.gnome.SessionManager"),
                                QStringLiteral("Uninhibit"),
                                {QStringLiteral("org.tallyfox.tallyfox"), withoutWindow, reason, suspendFlag}};
    return std::make_unique<CookieInhibition>(context, bus, service);
}

std::unique_ptr<InhibitionRequest> requestPortal(QObject& context, const QDBusConnection& bus, const QString& reason)
{
    return std::make_unique<PortalInhibition>(context, bus, reason);
}

std::unique_ptr<InhibitionRequest> requestLoginManager(QObject& context, const QDBusConnection& bus,
                                                       const QString& reason)
{
    return std::make_unique<LoginInhibition>(context, bus, reason);
}

} // namespace tallyfox
