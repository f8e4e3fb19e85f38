#include "Tallyfox/Agent/KeepAwake/LoginInhibition.h"

#include "Tallyfox/Agent/Bus/ServiceCall.h"

#include <QDBusPendingReply>
#include <QPointer>

namespace tallyfox {

LoginInhibition::LoginInhibition(const InhibitionContext& context)
{
    const QString service = QStringLiteral("org.freedesktop.login1");
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/login1"),
                                       QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    call << QStringLiteral("idle") << QStringLiteral("Tallyfox") << context.reason << QStringLiteral("block");
    call.setAutoStartService(false);
    watchService(*this, context.bus, service, [this] { fail(); });
    // An answer for nobody closes the descriptor it brings, which is all that there is to give back.
    callService(context.keeper, context.bus, call, [self = QPointer{this}](const QDBusPendingCall& answered) {
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

} // namespace tallyfox
