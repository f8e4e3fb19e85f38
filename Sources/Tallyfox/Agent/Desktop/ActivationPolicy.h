#pragma once

#include <memory>

class QWidget;

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

    /// Takes a top-level window under the policy for as long as both live, each time it is shown.
    virtual void addWindow(QWidget& window) = 0;
    /// Acts at once on the windows that are shown.
    virtual void setPolicy(ActivationPolicy policy) = 0;
};

/// The policy of this desktop. Where a program cannot say such a thing of itself, setting it does nothing.
std::unique_ptr<ActivationPolicySwitch> makeActivationPolicySwitch();

} // namespace tallyfox
