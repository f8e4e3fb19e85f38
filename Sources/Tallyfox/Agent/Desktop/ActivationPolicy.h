#pragma once

#include <cstdint>
#include <memory>

class QWidget;
struct xcb_connection_t;

namespace tallyfox {

enum class ActivationPolicy {
    regular, ///< the program's windows are in the taskbar and in the switcher
    accessory, ///< they are not
};

/// How the desktop lists the program. Accessory until something else is set. Main thread.
class ActivationPolicySwitch {
public:
    ActivationPolicySwitch() = default;
    ActivationPolicySwitch(const ActivationPolicySwitch&) = delete;
    ActivationPolicySwitch& operator=(const ActivationPolicySwitch&) = delete;
    virtual ~ActivationPolicySwitch() = default;

    /// Applies the policy to a top-level window each time it is shown, for as long as both exist.
    virtual void addWindow(QWidget& window) = 0;
    /// Takes effect at once on the windows that are shown.
    virtual void setPolicy(ActivationPolicy policy) = 0;
};

/// The policy of this desktop. It works under X11; Wayland has no protocol for it, so there setting it does nothing.
std::unique_ptr<ActivationPolicySwitch> makeActivationPolicySwitch();

/// Keeps an X11 window out of taskbar, switcher and pager, or lets it in. A shown window belongs to the window manager,
/// which is asked; for a hidden one the property is set that the window manager reads when the window is shown.
void setWindowListed(xcb_connection_t* connection, std::uint32_t window, bool isListed, bool isShown);

} // namespace tallyfox
