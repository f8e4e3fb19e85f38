#include "Tallyfox/Agent/KeepAwake/CookieInhibition.h"

#include "Tallyfox/Agent/Bus/ServiceCall.h"

#include <QDBusPendingReply>
#include <QPointer>

namespace tallyfox {

namespace {

constexpr unsigned withoutWindow = 0;
constexpr unsigned doNotSuspend = 4;

/// Only what runs is asked: starting another desktop's service would do more than the user wants.
QDBusMessage callOf(const CookieService& service, const QString& method)
{
    QDBusMessage call = QDBusMessage::createMethodCall(service.name, service.path, service.interface, method);
    call.setAutoStartService(false);
    return call;
}

QDBusMessage with(QDBusMessage end, unsigned cookie)
{
    return end << cookie;
}

} // namespace

CookieService powerManagement(const QString& reason)
{
    return {QStringLiteral("org.freedesktop.PowerManagement"),
            QStringLiteral("/org/freedesktop/PowerManagement/Inhibit"),
            QStringLiteral("org.freedesktop.PowerManagement.Inhibit"),
            QStringLiteral("UnInhibit"),
            {QStringLiteral("Tallyfox"), reason}};
}

CookieService sessionManager(const QString& reason)
{
    return {QStringLiteral("org.gnome.SessionManager"),
            QStringLiteral("/org/gnome/SessionManager"),
            QStringLiteral("org.gnome.SessionManager"),
            QStringLiteral("Uninhibit"),
            {QStringLiteral("org.tallyfox.tallyfox"), withoutWindow, reason, doNotSuspend}};
}

CookieInhibition::CookieInhibition(const InhibitionContext& context, const CookieService& service)
    : m_bus(context.bus)
    , m_end(callOf(service, service.endMethod))
{
    QDBusMessage call = callOf(service, QStringLiteral("Inhibit"));
    call.setArguments(service.arguments);
    watchService(*this, m_bus, service.name, [this] { fail(); });
    const auto handle = [bus = m_bus, end = m_end, self = QPointer{this}](const QDBusPendingCall& answered) {
        const QDBusPendingReply<unsigned> reply = answered;
        if (reply.isError()) {
            if (self)
                self->fail();
        } else if (self) {
            self->m_cookie = reply.value();
            self->grant();
        } else {
            bus.send(with(end, reply.value()));
        }
    };
    callService(context.keeper, m_bus, call, handle);
}

CookieInhibition::~CookieInhibition()
{
    if (m_cookie)
        m_bus.send(with(m_end, *m_cookie));
}

} // namespace tallyfox
