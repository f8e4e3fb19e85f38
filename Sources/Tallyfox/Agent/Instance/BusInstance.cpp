#include "Tallyfox/Agent/Instance/BusInstance.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QLatin1StringView>

namespace tallyfox {

namespace {

constexpr std::chrono::milliseconds busClaimTimeout{1000}; ///< the bus has just answered
constexpr unsigned doNotQueue = 4; ///< nor allow replacement
constexpr unsigned nameIsOurs = 1;
constexpr unsigned nameIsAnothers = 3;

QDBusMessage makeBusCall(const QString& method)
{
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    return QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus, method);
}

// Desktops send one of these keys or both, with the same token, whatever the display is.
QString startupId()
{
    return QStringLiteral("desktop-startup-id");
}

QString waylandToken()
{
    return QStringLiteral("activation-token");
}

QByteArray findToken(const QVariantMap& platformData)
{
    const QString token = platformData.value(waylandToken()).toString();
    return (token.isEmpty() ? platformData.value(startupId()).toString() : token).toUtf8();
}

} // namespace

BusInstance::BusInstance(const QDBusConnection& bus, const QString& id, QObject* parent)
    : SingleInstance(parent)
    , m_bus(bus)
    , m_id(id)
    , m_path(QLatin1Char('/') + QString{id}.replace(QLatin1Char('.'), QLatin1Char('/')))
{
    // Queued, so that the caller, who waits only a moment, is answered first.
    connect(this, &BusInstance::asked, this, &SingleInstance::requested, Qt::QueuedConnection);
}

BusInstance::~BusInstance()
{
    if (!m_ownsName)
        return;
    m_bus.unregisterObject(m_path);
    m_bus.send(makeBusCall(QStringLiteral("ReleaseName")) << m_id);
}

SingleInstance::Claim BusInstance::claim()
{
    // The object comes first: peers may call as soon as they see the name.
    if (!m_bus.registerObject(m_path, this, QDBusConnection::ExportScriptableSlots))
        return Claim::impossible;
    const QDBusMessage call = makeBusCall(QStringLiteral("RequestName")) << m_id << doNotQueue;
    const QDBusReply<unsigned> answer = m_bus.call(call, QDBus::Block, busClaimTimeout.count());
    m_ownsName = answer.isValid() && answer.value() == nameIsOurs;
    if (m_ownsName)
        return Claim::first;
    m_bus.unregisterObject(m_path);
    return answer.isValid() && answer.value() == nameIsAnothers ? Claim::other : Claim::impossible;
}

bool BusInstance::send(AgentAction action, const QByteArray& activationToken, std::chrono::milliseconds timeout)
{
    const bool isShow = action == AgentAction::show;
    QDBusMessage call =
        QDBusMessage::createMethodCall(m_id, m_path, QStringLiteral("org.freedesktop.Application"),
                                       isShow ? QStringLiteral("Activate") : QStringLiteral("ActivateAction"));
    if (!isShow)
        call << QString::fromLatin1(toName(action)) << QVariantList{};
    QVariantMap platformData;
    if (!activationToken.isEmpty()) {
        const QString token = QString::fromUtf8(activationToken);
        platformData = {{startupId(), token}, {waylandToken(), token}};
    }
    call << platformData;
    call.setAutoStartService(false); // only a running agent is asked
    return m_bus.call(call, QDBus::Block, static_cast<int>(timeout.count())).type() == QDBusMessage::ReplyMessage;
}

void BusInstance::Activate(const QVariantMap& platformData)
{
    Q_EMIT asked(AgentAction::show, findToken(platformData));
}

void BusInstance::Open(const QStringList&, const QVariantMap& platformData)
{
    Q_EMIT asked(AgentAction::show, findToken(platformData));
}

void BusInstance::ActivateAction(const QString& name, const QVariantList&, const QVariantMap& platformData)
{
    if (const auto named = findAction(name.left(16).toLatin1()))
        Q_EMIT asked(*named, findToken(platformData));
    else
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("no such action"));
}

} // namespace tallyfox
