#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"

#include "Tallyfox/Agent/Bus/OwnConnection.h"
#include "Tallyfox/Agent/Bus/SessionBus.h"
#include "Tallyfox/Agent/Desktop/Display.h"
#include "Tallyfox/Agent/Shortcut/KdeShortcut.h"
#include "Tallyfox/Agent/Shortcut/PortalShortcut.h"
#include "Tallyfox/Agent/Shortcut/X11Shortcut.h"

#include <QGuiApplication>

#include <utility>

namespace tallyfox {

namespace {

/// A choice that cannot be stored, for example on a full disk, still applies until the program ends.
void ignoreStoreFailure(bool /*isStored*/) { }

class DesktopShortcut : public GlobalShortcut {
public:
    explicit DesktopShortcut(UserDefaults userDefaults)
        : m_userDefaults(std::move(userDefaults))
    {
        const QByteArray desktops = qgetenv("XDG_CURRENT_DESKTOP");
        for (const ShortcutBackEnd backEnd : shortcutBackEnds(QGuiApplication::platformName(), m_isWayland, desktops)) {
            switch (backEnd) {
            case ShortcutBackEnd::kdeService:
                addKdeService();
                break;
            case ShortcutBackEnd::portal:
                addPortal();
                break;
            case ShortcutBackEnd::keyGrab:
                m_connection = x11Connection();
                break;
            }
        }
        update();
    }

    void check() override
    {
        if (m_grab)
            m_grab->check();
        if (m_portal)
            m_portal->check();
    }

    void request() override
    {
        if (m_portal)
            m_portal->request();
    }

private:
    void addKdeService()
    {
        const QDBusConnection bus = sessionBus();
        if (!bus.isConnected())
            return;
        m_kde = std::make_unique<KdeShortcut>(bus);
        connectBackEnd(*m_kde);
        connect(m_kde.get(), &KdeShortcut::isServedChanged, this, &DesktopShortcut::update);
    }

    void addPortal()
    {
        if (!sessionBus().isConnected())
            return;
        // The portal takes the registration of an application only before any other call; Qt calls it for its theme.
        m_portalBus = std::make_unique<OwnConnection>(QGuiApplication::desktopFileName() + QStringLiteral(".shortcut"));
        m_portal = std::make_unique<PortalShortcut>(m_portalBus->bus());
        connectBackEnd(*m_portal);
        connect(m_portal.get(), &PortalShortcut::consentChanged, this, &DesktopShortcut::storeConsent);
        if (m_userDefaults.preferences().requestsShortcut)
            m_portal->request();
    }

    static QDBusConnection sessionBus()
    {
        return answeringSessionBus(std::chrono::milliseconds{200});
    }

    void connectBackEnd(const GlobalShortcut& backEnd)
    {
        connect(&backEnd, &GlobalShortcut::activated, this, &GlobalShortcut::activated);
        connect(&backEnd, &GlobalShortcut::stateChanged, this, &DesktopShortcut::update);
    }

    void storeConsent(bool hasConsent)
    {
        if (m_userDefaults.preferences().requestsShortcut != hasConsent)
            ignoreStoreFailure(m_userDefaults.set(&Preferences::requestsShortcut, hasConsent));
    }

    void update()
    {
        updateGrab();
        setState(currentState());
    }

    /// While another back end has the keys, a grab would report them a second time, or take them from a program or a
    /// user who has chosen otherwise.
    void updateGrab()
    {
        const bool isLeftToOthers =
            (m_kde && m_kde->isServed()) || (m_portal && m_portal->state() == ShortcutState::inForce);
        if (isLeftToOthers)
            m_grab.reset();
        else if (m_connection && !m_grab) {
            m_grab = std::make_unique<X11Shortcut>(m_connection);
            connectBackEnd(*m_grab);
        }
    }

    [[nodiscard]] ShortcutState currentState() const
    {
        if (m_kde && m_kde->isServed())
            return m_kde->state();
        if (m_portal && m_portal->state() != ShortcutState::notInForce)
            return m_portal->state();
        return m_grab && !m_isWayland ? m_grab->state() : ShortcutState::notInForce;
    }

    UserDefaults m_userDefaults;
    bool m_isWayland = isWaylandSession();
    xcb_connection_t* m_connection = nullptr; ///< for grabs; null without that back end
    std::unique_ptr<X11Shortcut> m_grab;
    std::unique_ptr<KdeShortcut> m_kde;
    std::unique_ptr<OwnConnection> m_portalBus;
    std::unique_ptr<PortalShortcut> m_portal;
};

} // namespace

void GlobalShortcut::setState(ShortcutState state)
{
    if (m_state == state)
        return;
    m_state = state;
    Q_EMIT stateChanged(state);
}

std::vector<ShortcutBackEnd> shortcutBackEnds(QStringView platform, bool isWaylandSession, const QByteArray& desktops)
{
    const bool isX11 = platform == QLatin1StringView{"xcb"};
    if (!isX11 && !platform.startsWith(QLatin1StringView{"wayland"}))
        return {};
    std::vector<ShortcutBackEnd> backEnds;
    if (desktops.split(':').contains("KDE"))
        backEnds.push_back(ShortcutBackEnd::kdeService);
    else if (isWaylandSession)
        backEnds.push_back(ShortcutBackEnd::portal);
    if (isX11)
        backEnds.push_back(ShortcutBackEnd::keyGrab);
    return backEnds;
}

std::unique_ptr<GlobalShortcut> registerGlobalShortcut(const UserDefaults& userDefaults)
{
    return std::make_unique<DesktopShortcut>(userDefaults);
}

} // namespace tallyfox
