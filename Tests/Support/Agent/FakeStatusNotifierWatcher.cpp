#include "Support/Agent/FakeStatusNotifierWatcher.h"

#include <QDBusError>

namespace tallyfox::test {

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString itemPath = QStringLiteral("/StatusNotifierItem");

bool isRight(const QDBusMessage& call)
{
    const bool isRegistration =
        call.member() == QStringLiteral("RegisterStatusNotifierItem") && call.interface() == watcherName;
    const bool isQuestion = call.member() == QStringLiteral("GetAll")
        && call.interface() == QStringLiteral("org.freedesktop.DBus.Properties")
        && call.arguments().value(0).toString() == watcherName;
    return (isRegistration || isQuestion) && call.signature() == QStringLiteral("s")
        && call.path() == QStringLiteral("/StatusNotifierWatcher");
}

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
    announce(isThere ? QStringLiteral("StatusNotifierHostRegistered")
                     : QStringLiteral("StatusNotifierHostUnregistered"));
}

void FakeStatusNotifierWatcher::drop(const QString& item)
{
    m_items.removeAll(item + itemPath);
    announce(QStringLiteral("StatusNotifierItemUnregistered"), {item + itemPath});
}

void FakeStatusNotifierWatcher::add(const QString& item)
{
    m_items += item + itemPath;
    announce(QStringLiteral("StatusNotifierItemRegistered"), {item + itemPath});
}

void FakeStatusNotifierWatcher::announce(const QString& signal, const QVariantList& arguments)
{
    QDBusMessage message = QDBusMessage::createSignal(QStringLiteral("/StatusNotifierWatcher"), watcherName, signal);
    message.setArguments(arguments);
    m_service.bus().send(message);
}

qsizetype FakeStatusNotifierWatcher::registrationCalls() const
{
    return m_service.callsOf("RegisterStatusNotifierItem").size();
}

qsizetype FakeStatusNotifierWatcher::hostQuestions() const
{
    return m_service.callsOf("GetAll").size();
}

std::optional<QDBusMessage> FakeStatusNotifierWatcher::answerTo(const QDBusMessage& call)
{
    if (!isRight(call))
        m_wrongCalls += call.member() + call.signature();
    const bool isRegistration = call.member() == QStringLiteral("RegisterStatusNotifierItem");
    if (isRegistration && (m_manner == Manner::takesItems || m_manner == Manner::answersNonsense)) {
        m_registered += call.arguments().value(0).toString();
        m_items += m_registered.last() + itemPath;
    }
    switch (m_manner) {
    case Manner::takesItems:
        return isRegistration ? call.createReply() : call.createReply(properties());
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

QVariantMap FakeStatusNotifierWatcher::properties() const
{
    return {{QStringLiteral("IsStatusNotifierHostRegistered"), m_hasHost},
            {QStringLiteral("RegisteredStatusNotifierItems"), m_items},
            {QStringLiteral("ProtocolVersion"), 0}};
}

} // namespace tallyfox::test
