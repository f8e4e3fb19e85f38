#include "Tallyfox/Agent/Shortcut/PortalShortcut.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>

#include <algorithm>
#include <utility>

namespace tallyfox {

namespace {

const QString shortcutId = QStringLiteral("toggle-popover");
const QString sessionInterface = QStringLiteral("org.freedesktop.portal.Session");

/// A shortcut as the portal wants it: "(sa{sv})".
struct PortalShortcutEntry {
    QString id;
    QVariantMap properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcutEntry& entry)
{
    argument.beginStructure();
    argument << entry.id << entry.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcutEntry& entry)
{
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.endStructure();
    return argument;
}

/// The user may leave a shortcut out and still agree to the rest, which is nothing.
bool isGranted(const QVariantMap& results)
{
    const auto granted = results.value(QStringLiteral("shortcuts")).value<QDBusArgument>();
    if (granted.currentSignature() != QLatin1StringView{"a(sa{sv})"})
        return false;
    const auto entries = qdbus_cast<QList<PortalShortcutEntry>>(granted);
    return std::any_of(entries.begin(), entries.end(),
                       [](const PortalShortcutEntry& entry) { return entry.id == shortcutId; });
}

/// Empty when the results name no session. It ought to be a text; some portals send a path.
QString sessionOf(const QVariantMap& results)
{
    const QVariant value = results.value(QStringLiteral("session_handle"));
    const QString path = value.metaType() == QMetaType::fromType<QDBusObjectPath>()
        ? value.value<QDBusObjectPath>().path()
        : value.toString();
    return path.startsWith(portalPath() + QStringLiteral("/session/")) ? path : QString{};
}

QVariant shortcuts()
{
    qDBusRegisterMetaType<PortalShortcutEntry>();
    qDBusRegisterMetaType<QList<PortalShortcutEntry>>();
    const QVariantMap properties{
        {QStringLiteral("description"), PortalShortcut::tr("Open or close Tallyfox")},
        {QStringLiteral("preferred_trigger"), QStringLiteral("LOGO+ALT+b")},
    };
    return QVariant::fromValue(QList<PortalShortcutEntry>{{shortcutId, properties}});
}

} // namespace

PortalShortcut::PortalShortcut(const QDBusConnection& bus, QObject* parent)
    : GlobalShortcut(parent)
    , m_bus(bus)
{
    const auto* watcher = new QDBusServiceWatcher(portalService(), bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(
        watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString&, const QString& before, const QString& after) { followOwner(before, after); },
        Qt::QueuedConnection);
    // From anybody: who the portal is will be known later.
    m_bus.connect(QString{}, portalPath(), QStringLiteral("org.freedesktop.portal.GlobalShortcuts"),
                  QStringLiteral("Activated"), this, SLOT(takeActivation(QDBusMessage)));
    createSession();
}

PortalShortcut::~PortalShortcut()
{
    closeSession();
}

void PortalShortcut::createSession()
{
    m_request = std::make_unique<PortalRequest>(
        m_context, m_bus, QStringLiteral("GlobalShortcuts.CreateSession"), QVariantList{},
        QVariantMap{{QStringLiteral("session_handle_token"), newPortalToken()}});
    connect(m_request.get(), &PortalRequest::succeeded, this, &PortalShortcut::bind);
    connect(m_request.get(), &PortalRequest::failed, this, &PortalShortcut::giveUp);
}

void PortalShortcut::bind(const QVariantMap& results)
{
    m_portal = m_request->portal();
    m_session = sessionOf(results);
    if (m_session.isEmpty()) {
        giveUp();
        return;
    }
    m_bus.connect(QString{}, m_session, sessionInterface, QStringLiteral("Closed"), this, SLOT(takeEnd(QDBusMessage)));
    m_request = std::make_unique<PortalRequest>(
        m_context, m_bus, QStringLiteral("GlobalShortcuts.BindShortcuts"),
        QVariantList{QVariant::fromValue(QDBusObjectPath{m_session}), shortcuts(), QString{}});
    connect(m_request.get(), &PortalRequest::succeeded, this, &PortalShortcut::takeGrant);
    connect(m_request.get(), &PortalRequest::failed, this, &PortalShortcut::giveUp);
}

void PortalShortcut::takeGrant(const QVariantMap& results)
{
    if (!isGranted(results)) {
        giveUp();
        return;
    }
    m_request.reset(); // what becomes of the portal is told by the bus from now on
    setBound(true);
}

void PortalShortcut::giveUp()
{
    closeSession();
    setBound(false);
}

void PortalShortcut::takeActivation(const QDBusMessage& activation)
{
    const QVariantList arguments = activation.arguments();
    if (!m_isBound || activation.service() != m_portal || activation.signature() != QLatin1StringView{"osta{sv}"})
        return;
    if (arguments.at(0).value<QDBusObjectPath>().path() == m_session && arguments.at(1).toString() == shortcutId)
        Q_EMIT activated();
}

void PortalShortcut::takeEnd(const QDBusMessage& end)
{
    if (end.service() == m_portal && end.path() == m_session)
        giveUp();
}

void PortalShortcut::followOwner(const QString& before, const QString& after)
{
    if (m_isBound && before == m_portal) {
        giveUp();
        m_isMissed = true;
    }
    if (m_isMissed && !after.isEmpty()) {
        m_isMissed = false;
        createSession();
    }
}

void PortalShortcut::setBound(bool isBound)
{
    if (m_isBound == isBound)
        return;
    m_isBound = isBound;
    Q_EMIT boundChanged(isBound);
}

void PortalShortcut::closeSession()
{
    const QString path = std::exchange(m_session, {});
    if (path.isEmpty())
        return;
    m_bus.disconnect(QString{}, path, sessionInterface, QStringLiteral("Closed"), this, SLOT(takeEnd(QDBusMessage)));
    m_bus.send(QDBusMessage::createMethodCall(m_portal, path, sessionInterface, QStringLiteral("Close")));
}

} // namespace tallyfox
