#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"

#include "Tallyfox/Agent/Bus/SessionBus.h"
#include "Tallyfox/Agent/Shortcut/PortalShortcut.h"
#include "Tallyfox/Agent/Shortcut/ShortcutWays.h"
#include "Tallyfox/Agent/Shortcut/X11Shortcut.h"

#include <QGuiApplication>

namespace tallyfox {

namespace {

constexpr std::chrono::milliseconds busLimit{200};

bool isWaylandSession()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || qgetenv("XDG_SESSION_TYPE") == "wayland";
}

class DesktopShortcut : public GlobalShortcut {
public:
    DesktopShortcut()
        : m_ways(shortcutWays(QGuiApplication::platformName(), isWaylandSession()))
    {
        grabUnless(false);
        if (m_ways.isPortals)
            askPortal();
    }

private:
    void askPortal()
    {
        const QDBusConnection bus = answeringSessionBus(busLimit);
        if (!bus.isConnected())
            return;
        m_portal = std::make_unique<PortalShortcut>(bus);
        connect(m_portal.get(), &GlobalShortcut::activated, this, &GlobalShortcut::activated);
        connect(m_portal.get(), &PortalShortcut::isBoundChanged, this, &DesktopShortcut::grabUnless);
    }

    /// With the portal's shortcut in force a grab would report the same keys for a second time.
    void grabUnless(bool isBound)
    {
        m_grab.reset();
        const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
        if (isBound || !m_ways.isGrabbed || !x11)
            return;
        m_grab = std::make_unique<X11Shortcut>(x11->connection());
        connect(m_grab.get(), &GlobalShortcut::activated, this, &GlobalShortcut::activated);
    }

    ShortcutWays m_ways;
    std::unique_ptr<X11Shortcut> m_grab;
    std::unique_ptr<PortalShortcut> m_portal;
};

} // namespace

std::unique_ptr<GlobalShortcut> registerGlobalShortcut()
{
    return std::make_unique<DesktopShortcut>();
}

} // namespace tallyfox
