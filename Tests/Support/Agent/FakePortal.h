#pragma once

#include "Support/Agent/FakeService.h"

#include <QDBusObjectPath>
#include <QDBusVariant>

namespace tallyfox::test {

/// The response to a request: a code (0 is consent), and results.
struct PortalDecision {
    unsigned response = 0;
    QVariantMap results{};
};

/// A desktop portal that returns the handle of each request at once, and responds as the test wants.
class FakePortal {
public:
    /// Nothing for no response.
    using Decide = std::function<std::optional<PortalDecision>(const QDBusMessage& call)>;

    FakePortal(const QDBusConnection& bus, Decide decide)
        : m_decide(std::move(decide))
        , m_service(bus, QStringLiteral("org.freedesktop.portal.Desktop"),
                    [this](const QDBusMessage& call) { return answer(call); })
    { }

    [[nodiscard]] FakeService& service()
    {
        return m_service;
    }

    [[nodiscard]] QList<QDBusMessage> callsOf(const char* method) const
    {
        return m_service.callsOf(method);
    }

    /// The object path of the request that `call` has made.
    static QString handleOf(const QDBusMessage& call)
    {
        const auto options = qdbus_cast<QVariantMap>(call.arguments().last());
        const QString peer = call.service().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
        return QStringLiteral("/org/freedesktop/portal/desktop/request/") + peer + QLatin1Char('/')
            + options.value(QStringLiteral("handle_token")).toString();
    }

    void respond(const QString& handle, const PortalDecision& decision)
    {
        sendResponse(m_service.bus(), handle, decision);
    }

    /// From any peer on the bus.
    static void sendResponse(const QDBusConnection& bus, const QString& handle, const PortalDecision& decision)
    {
        QDBusMessage signal = QDBusMessage::createSignal(handle, QStringLiteral("org.freedesktop.portal.Request"),
                                                         QStringLiteral("Response"));
        bus.send(signal << decision.response << decision.results);
    }

    bool respondsBeforeItReplies = false;

private:
    std::optional<QDBusMessage> answer(const QDBusMessage& call)
    {
        if (call.member() == QStringLiteral("Close"))
            return call.createReply();
        if (call.member() == QStringLiteral("Get"))
            return call.createReply(QVariant::fromValue(QDBusVariant{1U}));
        if (call.member() == QStringLiteral("Register"))
            return call.createReply();
        const QString handle = handleOf(call);
        const QDBusMessage reply = call.createReply(QVariant::fromValue(QDBusObjectPath{handle}));
        const auto decision = m_decide(call);
        if (!respondsBeforeItReplies)
            m_service.bus().send(reply);
        if (decision)
            respond(handle, *decision);
        return respondsBeforeItReplies ? std::optional{reply} : std::nullopt;
    }

    Decide m_decide;
    FakeService m_service;
};

} // namespace tallyfox::test
