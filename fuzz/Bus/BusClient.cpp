#include "Bus/BusClient.h"

#include "FuzzSupport.h"
#include "Tallyfox/Agent/Bus/PortalRequest.h"
#include "Tallyfox/Agent/Bus/ServiceCall.h"
#include "Tallyfox/Agent/Desktop/NotificationCenter.h"
#include "Tallyfox/Agent/KeepAwake/InhibitionRequest.h"
#include "Tallyfox/Agent/Shortcut/KdeShortcut.h"
#include "Tallyfox/Agent/Shortcut/PortalShortcut.h"

#include <utility>

namespace tallyfox {

BusClient::BusClient(BusClientKind kind, const QDBusConnection& bus)
    : m_kind(kind)
    , m_inhibitor(makeSleepInhibitor([bus] { return bus; }, [bus] { return bus; }, noTimeout))
{
    make(bus);
}

BusClient::~BusClient() = default;

template <typename Object> Object& BusClient::keep(std::unique_ptr<Object> object)
{
    Object& kept = *object;
    const auto grant = [this] { ++m_granted; };
    const auto fail = [this] { ++m_failed; };
    if constexpr (std::is_base_of_v<InhibitionRequest, Object>) {
        QObject::connect(&kept, &Object::granted, &kept, grant);
        QObject::connect(&kept, &Object::failed, &kept, fail);
    } else if constexpr (std::is_base_of_v<PortalRequest, Object>) {
        QObject::connect(&kept, &Object::succeeded, &kept, grant);
        QObject::connect(&kept, &Object::failed, &kept, fail);
    } else if constexpr (std::is_base_of_v<SleepInhibition, Object>) {
        QObject::connect(&kept, &Object::began, &kept, grant);
        QObject::connect(&kept, &Object::ended, &kept, fail);
    }
    m_object = std::move(object);
    return kept;
}

void BusClient::make(const QDBusConnection& bus)
{
    const QString reason = QStringLiteral("reason");
    switch (m_kind) {
    case BusClientKind::powerManagement:
        keep(requestPowerManagement(m_context, bus, reason));
        break;
    case BusClientKind::sessionManager:
        keep(requestSessionManager(m_context, bus, reason));
        break;
    case BusClientKind::portalInhibition:
        keep(requestPortal(m_context, bus, reason));
        break;
    case BusClientKind::loginInhibition:
        keep(requestLoginManager(m_context, bus, reason));
        break;
    case BusClientKind::portalRequest:
        keep(std::make_unique<PortalRequest>(m_context, bus, QStringLiteral("Any.Thing"), QVariantList{1}));
        break;
    case BusClientKind::sleepInhibitor:
        keep(m_inhibitor->begin(reason));
        break;
    case BusClientKind::portalShortcut:
        observe(keep(std::make_unique<PortalShortcut>(bus)));
        m_shortcut->request();
        break;
    case BusClientKind::statusNotifierWatch:
        m_watch = &keep(std::make_unique<StatusNotifierWatch>(bus));
        QObject::connect(m_watch, &StatusNotifierWatch::hostChanged, m_watch, [this] {
            require(m_watch->host() != std::exchange(m_toldHost, m_watch->host()),
                    "the host has changed when it is reported");
        });
        break;
    case BusClientKind::notificationCenter:
        m_center = makeNotificationCenter(bus);
        ask();
        break;
    case BusClientKind::kdeShortcut:
        m_kdeShortcut = &keep(std::make_unique<KdeShortcut>(bus));
        observe(*m_kdeShortcut);
        break;
    }
}

void BusClient::observe(GlobalShortcut& shortcut)
{
    m_shortcut = &shortcut;
    QObject::connect(&shortcut, &GlobalShortcut::activated, &shortcut, [this] { ++m_activated; });
    QObject::connect(&shortcut, &GlobalShortcut::stateChanged, &shortcut,
                     [before = shortcut.state()](ShortcutState state) mutable {
                         require(state != std::exchange(before, state), "the state has changed when it is reported");
                     });
}

void BusClient::end()
{
    m_shortcut = nullptr;
    m_kdeShortcut = nullptr;
    m_watch = nullptr;
    m_center.reset();
    m_object.reset();
}

std::string_view BusClient::service() const
{
    switch (m_kind) {
    case BusClientKind::powerManagement:
        return "org.freedesktop.PowerManagement";
    case BusClientKind::sessionManager:
        return "org.gnome.SessionManager";
    case BusClientKind::portalInhibition:
    case BusClientKind::portalRequest:
        return "org.freedesktop.portal.Desktop";
    case BusClientKind::loginInhibition:
        return "org.freedesktop.login1";
    default:
        return "";
    }
}

bool BusClient::isBound() const
{
    return m_shortcut && m_shortcut->state() == ShortcutState::inForce;
}

StatusNotifierHost BusClient::host() const
{
    return m_watch ? m_watch->host() : m_toldHost;
}

bool BusClient::isServed() const
{
    return m_kdeShortcut && m_kdeShortcut->isServed();
}

void BusClient::ask()
{
    if (m_shortcut) {
        m_shortcut->check();
        m_shortcut->request();
    }
    if (!m_center)
        return;
    const std::size_t place = m_completions.size();
    m_completions.push_back(-1);
    m_center->requestAuthorization({.alert = true, .sound = true}, [this, place](bool granted) {
        require(m_completions[place] == -1, "a completion is called once");
        m_completions[place] = granted ? 1 : 0;
    });
}

} // namespace tallyfox
