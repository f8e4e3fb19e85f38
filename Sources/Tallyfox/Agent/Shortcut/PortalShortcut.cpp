#include "Tallyfox/Agent/Shortcut/PortalShortcut.h"

#include "Tallyfox/Agent/Bus/ServiceCall.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>

#include <algorithm>
#include <utility>

namespace tallyfox {

namespace {

const QString shortcutId = QStringLiteral("toggle-popover");
const QString shortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
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

/// The user may have removed the shortcut and still consented, to an empty list.
bool isGranted(const QVariantMap& results)
{
    const auto granted = results.value(QStringLiteral("shortcuts")).value<QDBusArgument>();
    if (granted.currentSignature() != QLatin1StringView{"a(sa{sv})"})
        return false;
    const auto entries = qdbus_cast<QList<PortalShortcutEntry>>(granted);
    return std::any_of(entries.begin(), entries.end(),
                       [](const PortalShortcutEntry& entry) { return entry.id == shortcutId; });
}

/// Empty without a session in the results. It should be a string; some portals send an object path.
QString findSession(const QVariantMap& results)
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
        {QStringLiteral("description"), GlobalShortcut::tr("Open or close Tallyfox")},
        {QStringLiteral("preferred_trigger"), QStringLiteral("LOGO+ALT+b")},
    };
    return QVariant::fromValue(QList<PortalShortcutEntry>{{shortcutId, properties}});
}

/// Tells the portal which application this is. GNOME gives shortcuts to known ones only, and without this the portal
/// knows those that the desktop has started. The reply does not matter: portals before version 1.20 have no such
/// method, the others refuse an application without a desktop entry, and a later call finds it registered.
void registerApplication(const QDBusConnection& bus)
{
    QDBusMessage call = QDBusMessage::createMethodCall(portalService(), portalPath(),
                                                       QStringLiteral("org.freedesktop.host.portal.Registry"),
                                                       QStringLiteral("Register"));
    call << QGuiApplication::desktopFileName() << QVariantMap{};
    bus.send(call);
}

} // namespace

PortalShortcut::PortalShortcut(const QDBusConnection& bus, QObject* parent)
    : GlobalShortcut(parent)
    , m_bus(bus)
{
    const auto* watcher = new QDBusServiceWatcher(portalService(), bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(
        watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString&, const QString& before, const QString& after) { handleOwnerChange(before, after); },
        Qt::QueuedConnection);
    // From any sender: who the portal is will be known later.
    m_bus.connect(QString{}, portalPath(), shortcutsInterface, QStringLiteral("Activated"), this,
                  SLOT(handleActivation(QDBusMessage)));
}

PortalShortcut::~PortalShortcut()
{
    closeSession();
}

void PortalShortcut::check()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        portalService(), portalPath(), QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << shortcutsInterface << QStringLiteral("version");
    callService(m_context, m_bus, call, [this](const QDBusPendingCall& answered) {
        const QDBusPendingReply<QDBusVariant> reply = answered;
        if (!m_request && state() != ShortcutState::inForce)
            setState(reply.isValid() ? ShortcutState::onRequest : ShortcutState::notInForce);
    });
}

void PortalShortcut::request()
{
    if (m_request || state() == ShortcutState::inForce)
        return;
    registerApplication(m_bus);
    m_request = std::make_unique<PortalRequest>(
        m_context, m_bus, QStringLiteral("GlobalShortcuts.CreateSession"), QVariantList{},
        QVariantMap{{QStringLiteral("session_handle_token"), newPortalToken()}});
    connect(m_request.get(), &PortalRequest::succeeded, this, &PortalShortcut::bind);
    connect(m_request.get(), &PortalRequest::failed, this, &PortalShortcut::endSession);
}

void PortalShortcut::bind(const QVariantMap& results)
{
    m_portal = m_request->portal();
    m_session = findSession(results);
    if (m_session.isEmpty()) {
        endSession();
        return;
    }
    m_bus.connect(QString{}, m_session, sessionInterface, QStringLiteral("Closed"), this,
                  SLOT(handleSessionClosed(QDBusMessage)));
    m_request = std::make_unique<PortalRequest>(
        m_context, m_bus, QStringLiteral("GlobalShortcuts.BindShortcuts"),
        QVariantList{QVariant::fromValue(QDBusObjectPath{m_session}), shortcuts(), QString{}});
    connect(m_request.get(), &PortalRequest::succeeded, this, &PortalShortcut::handleGrant);
    connect(m_request.get(), &PortalRequest::failed, this, &PortalShortcut::handleRefusal);
}

void PortalShortcut::handleGrant(const QVariantMap& results)
{
    if (!isGranted(results)) {
        decline();
        return;
    }
    m_request.reset(); // from now on the service watcher reports the end of the portal
    Q_EMIT consentChanged(true);
    setState(ShortcutState::inForce);
}

void PortalShortcut::handleRefusal()
{
    if (const QVariantMap results = m_request->results(); isGranted(results))
        handleGrant(results); // GNOME 48.0 responds with an arbitrary code: only the list is right
    else if (m_request->isDecided())
        decline();
    else
        endSession();
}

void PortalShortcut::decline()
{
    endSession();
    Q_EMIT consentChanged(false);
    setState(ShortcutState::onRequest);
}

void PortalShortcut::endSession()
{
    m_request.reset();
    closeSession();
    setState(ShortcutState::notInForce);
}

void PortalShortcut::handleActivation(const QDBusMessage& activation)
{
    const QVariantList arguments = activation.arguments();
    if (state() != ShortcutState::inForce || activation.service() != m_portal
        || activation.signature() != QLatin1StringView{"osta{sv}"})
        return;
    if (arguments.at(0).value<QDBusObjectPath>().path() == m_session && arguments.at(1).toString() == shortcutId)
        Q_EMIT activated();
}

void PortalShortcut::handleSessionClosed(const QDBusMessage& end)
{
    if (end.service() == m_portal && end.path() == m_session)
        endSession();
}

void PortalShortcut::handleOwnerChange(const QString& before, const QString& after)
{
    if (state() == ShortcutState::inForce && before == m_portal) {
        endSession();
        m_wasLost = true;
    }
    if (m_wasLost && !after.isEmpty()) {
        m_wasLost = false;
        request();
    }
}

void PortalShortcut::closeSession()
{
    const QString path = std::exchange(m_session, {});
    if (path.isEmpty())
        return;
    m_bus.disconnect(QString{}, path, sessionInterface, QStringLiteral("Closed"), this,
                     SLOT(handleSessionClosed(QDBusMessage)));
    m_bus.send(QDBusMessage::createMethodCall(m_portal, path, sessionInterface, QStringLiteral("Close")));
}

} // namespace tallyfox
