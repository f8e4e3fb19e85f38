#include "Support/Agent/FakeStatusNotifierWatcher.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>

namespace tallyfox::test {

namespace {

QString name()
{
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

QString path()
{
    return QStringLiteral("/StatusNotifierWatcher");
}

} // namespace

FakeStatusNotifierWatcher::FakeStatusNotifierWatcher(const QDBusConnection& bus, Manner manner)
    : m_bus{bus}
    , m_manner{manner}
{
    m_bus.registerVirtualObject(path(), this);
    m_bus.registerService(name());
}

FakeStatusNotifierWatcher::~FakeStatusNotifierWatcher()
{
    QDBusConnection::disconnectFromBus(m_bus.name());
}

void FakeStatusNotifierWatcher::setManner(Manner manner)
{
    m_manner = manner;
}

void FakeStatusNotifierWatcher::setHost(bool isThere)
{
    m_hasHost = isThere;
    m_bus.send(QDBusMessage::createSignal(path(), name(),
                                          isThere ? QStringLiteral("StatusNotifierHostRegistered")
                                                  : QStringLiteral("StatusNotifierHostUnregistered")));
}

QStringList FakeStatusNotifierWatcher::registered() const
{
    return m_registered;
}

int FakeStatusNotifierWatcher::registrationCalls() const
{
    return m_registrationCalls;
}

int FakeStatusNotifierWatcher::hostQuestions() const
{
    return m_hostQuestions;
}

bool FakeStatusNotifierWatcher::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/)
{
    if (message.member() == QStringLiteral("RegisterStatusNotifierItem"))
        answerRegistration(message);
    if (message.member() == QStringLiteral("Get")) {
        ++m_hostQuestions;
        answer(message, QVariant::fromValue(QDBusVariant{m_hasHost}));
    }
    return true;
}

QString FakeStatusNotifierWatcher::introspect(const QString& /*path*/) const
{
    return {};
}

void FakeStatusNotifierWatcher::answerRegistration(const QDBusMessage& message)
{
    ++m_registrationCalls;
    if (m_manner == Manner::takesItems || m_manner == Manner::answersNonsense)
        m_registered += message.arguments().value(0).toString();
    answer(message, {});
}

void FakeStatusNotifierWatcher::answer(const QDBusMessage& message, const QVariant& value)
{
    switch (m_manner) {
    case Manner::takesItems:
        m_bus.send(value.isValid() ? message.createReply(value) : message.createReply());
        break;
    case Manner::refuses:
        m_bus.send(message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no")));
        break;
    case Manner::isSilent:
        break;
    case Manner::answersNonsense:
        m_bus.send(message.createReply({QStringList{QStringLiteral("nonsense")}, 42}));
        break;
    case Manner::knowsNoCalls:
        m_bus.send(message.createErrorReply(QDBusError::UnknownObject, QStringLiteral("not yet")));
        break;
    }
}

} // namespace tallyfox::test
