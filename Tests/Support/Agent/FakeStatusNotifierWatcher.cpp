#include "Support/Agent/FakeStatusNotifierWatcher.h"

#include <QDBusError>
#include <QDBusVariant>

namespace tallyfox::test {

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");

} // namespace

FakeStatusNotifierWatcher::FakeStatusNotifierWatcher(const QDBusConnection& bus, Manner manner)
    : m_manner{manner}
    , m_service{bus, watcherName, [this](const QDBusMessage& call) { return answerTo(call); }}
{ }

FakeStatusNotifierWatcher::~FakeStatusNotifierWatcher()
{
    QDBusConnection::disconnectFromBus(m_service.bus().name());
}

void FakeStatusNotifierWatcher::setHost(bool isThere)
{
    m_hasHost = isThere;
    m_service.bus().send(QDBusMessage::createSignal(QStringLiteral("/StatusNotifierWatcher"), watcherName,
                                                    isThere ? QStringLiteral("StatusNotifierHostRegistered")
                                                            : QStringLiteral("StatusNotifierHostUnregistered")));
}

qsizetype FakeStatusNotifierWatcher::registrationCalls() const
{
    return m_service.callsOf("RegisterStatusNotifierItem").size();
}

qsizetype FakeStatusNotifierWatcher::hostQuestions() const
{
    return m_service.callsOf("Get").size();
}

std::optional<QDBusMessage> FakeStatusNotifierWatcher::answerTo(const QDBusMessage& call)
{
    const bool isRegistration = call.member() == QStringLiteral("RegisterStatusNotifierItem");
    if (isRegistration && (m_manner == Manner::takesItems || m_manner == Manner::answersNonsense))
        m_registered += call.arguments().value(0).toString();
    switch (m_manner) {
    case Manner::takesItems:
        return isRegistration ? call.createReply() : call.createReply(QVariant::fromValue(QDBusVariant{m_hasHost}));
    case Manner::refuses:
        return call.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no"));
    case Manner::isSilent:
        return std::nullopt;
    case Manner::answersNonsense:
        return call.createReply({QStringList{QStringLiteral("nonsense")}, 42});
    case Manner::knowsNoCalls:
        return call.createErrorReply(QDBusError::UnknownObject, QStringLiteral("not yet"));
    }
    return std::nullopt;
}

} // namespace tallyfox::test
