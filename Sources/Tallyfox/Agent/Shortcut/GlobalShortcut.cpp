#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"

#include "Tallyfox/Agent/Bus/SessionBus.h"
#include "Tallyfox/Agent/Desktop/Display.h"
#include "Tallyfox/Agent/Shortcut/PortalShortcut.h"
#include "Tallyfox/Agent/Shortcut/X11Shortcut.h"

#include <QGuiApplication>

namespace tallyfox {

namespace {

bool isWaylandSession()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || qgetenv("XDG_SESSION_TYPE") == "wayland";
}

class DesktopShortcut : public GlobalShortcut {
public:
    DesktopShortcut()
    {
        for (const ShortcutBackEnd backEnd : shortcutBackEnds(QGuiApplication::platformName(), m_isWayland)) {
            switch (backEnd) {
            case ShortcutBackEnd::portal:
                askPortal();
                break;
            case ShortcutBackEnd::keyGrab:
                m_connection = x11Connection();
                break;
            }
        }
        grabUnless(false);
    }

    void check() override
    {
        if (m_grab)
            m_grab->check();
    }

private:
    void askPortal()
    {
        const QDBusConnection bus = answeringSessionBus(std::chrono::milliseconds{200});
        if (!bus.isConnected())
            return;
        m_portal = std::make_unique<PortalShortcut>(bus);
        connect(m_portal.get(), &GlobalShortcut::activated, this, &GlobalShortcut::activated);
        connect(m_portal.get(), &PortalShortcut::boundChanged, this, &DesktopShortcut::grabUnless);
    }

    /// While the portal's shortcut is bound, a grab would report the same keys a second time.
    void grabUnless(bool isBound)
    {
        m_isBound = isBound;
        m_grab.reset();
        if (!isBound && m_connection) {
            m_grab = std::make_unique<X11Shortcut>(m_connection);
            connect(m_grab.get(), &GlobalShortcut::activated, this, &GlobalShortcut::activated);
            connect(m_grab.get(), &GlobalShortcut::stateChanged, this, &DesktopShortcut::update);
        }
        update();
    }

    /// Under Wayland a grab works only while an X11 window has the focus.
    void update()
    {
        if (m_isBound)
            setState(ShortcutState::inForce);
        else
            setState(m_grab && !m_isWayland ? m_grab->state() : ShortcutState::notInForce);
    }

    bool m_isWayland = isWaylandSession();
    bool m_isBound = false; ///< by the portal
    xcb_connection_t* m_connection = nullptr; ///< for grabs; null without that back end
    std::unique_ptr<X11Shortcut> m_grab;
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

std::vector<ShortcutBackEnd> shortcutBackEnds(QStringView platform, bool isWaylandSession)
{
    if (platform == QLatin1StringView{"xcb"})
        return isWaylandSession ? std::vector{ShortcutBackEnd::portal, ShortcutBackEnd::keyGrab}
                                : std::vector{ShortcutBackEnd::keyGrab};
    return platform.startsWith(QLatin1StringView{"wayland"}) ? std::vector{ShortcutBackEnd::portal}
                                                             : std::vector<ShortcutBackEnd>{};
}

std::unique_ptr<GlobalShortcut> registerGlobalShortcut()
{
    return std::make_unique<DesktopShortcut>();
}

} // namespace tallyfox
