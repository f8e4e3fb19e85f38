#include "Tallyfox/Agent/Desktop/LayerShell.h"

#include <QMargins>
#include <QWidget>

#ifdef TALLYFOX_LAYER_SHELL
#include <QWindow>

#include <LayerShellQt/Window>
#include <memory>
#include <string_view>
#include <wayland-client.h>
#endif

namespace tallyfox {

#ifdef TALLYFOX_LAYER_SHELL

namespace {

template <auto destroy> struct Destroy {
    void operator()(auto* object) const
    {
        destroy(object);
    }
};

void findLayerShell(void* isFound, wl_registry* /*registry*/, std::uint32_t /*name*/, const char* interface,
                    std::uint32_t /*version*/)
{
    if (std::string_view{interface} == "zwlr_layer_shell_v1")
        *static_cast<bool*>(isFound) = true;
}

void ignoreRemoval(void* /*isFound*/, wl_registry* /*registry*/, std::uint32_t /*name*/) { }

LayerShellQt::Window::Anchors toAnchors(Qt::Edges edges)
{
    using LayerShellQt::Window;
    Window::Anchors anchors;
    anchors.setFlag(Window::AnchorTop, edges.testFlag(Qt::TopEdge));
    anchors.setFlag(Window::AnchorBottom, edges.testFlag(Qt::BottomEdge));
    anchors.setFlag(Window::AnchorLeft, edges.testFlag(Qt::LeftEdge));
    anchors.setFlag(Window::AnchorRight, edges.testFlag(Qt::RightEdge));
    return anchors;
}

} // namespace

bool hasLayerShell()
{
    const std::unique_ptr<wl_display, Destroy<wl_display_disconnect>> display{wl_display_connect(nullptr)};
    if (!display)
        return false;
    bool isFound = false;
    const wl_registry_listener listener{findLayerShell, ignoreRemoval};
    const std::unique_ptr<wl_registry, Destroy<wl_registry_destroy>> registry{wl_display_get_registry(display.get())};
    wl_registry_add_listener(registry.get(), &listener, &isFound);
    return wl_display_roundtrip(display.get()) >= 0 && isFound;
}

void makeLayerSurface(QWidget& window, LayerRole role, Qt::Edges edges, const QMargins& margins)
{
    using LayerShellQt::Window;
    window.winId();
    Window& surface = *Window::get(window.windowHandle());
    const bool isPopover = role == LayerRole::popover;
    surface.setLayer(isPopover ? Window::LayerOverlay : Window::LayerTop);
    // On demand, sway gives it no focus.
    surface.setKeyboardInteractivity(isPopover ? Window::KeyboardInteractivityExclusive
                                               : Window::KeyboardInteractivityNone);
    surface.setAnchors(toAnchors(edges));
    surface.setMargins(margins);
    surface.setScope(QStringLiteral("tallyfox"));
    surface.setCloseOnDismissed(false); // it is shown again
}

#else

bool hasLayerShell()
{
    return false;
}

void makeLayerSurface(QWidget& /*window*/, LayerRole /*role*/, Qt::Edges /*edges*/, const QMargins& /*margins*/) { }

#endif

} // namespace tallyfox
