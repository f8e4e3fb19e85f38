#include "Tallyfox/Agent/Desktop/TaskbarActivationPolicy.h"

#include "Tallyfox/Agent/Desktop/WindowListing.h"

#include <QEvent>
#include <QGuiApplication>

namespace tallyfox {

void TaskbarActivationPolicy::addWindow(QWidget& window)
{
    m_windows.removeAll(nullptr);
    m_windows += &window;
    window.installEventFilter(this);
    if (window.isVisible())
        apply(window, true);
}

void TaskbarActivationPolicy::setPolicy(ActivationPolicy policy)
{
    m_policy = policy;
    for (const QPointer<QWidget>& window : m_windows) {
        if (window && window->isVisible())
            apply(*window, true);
    }
}

bool TaskbarActivationPolicy::eventFilter(QObject* watched, QEvent* event)
{
    // The window manager clears the state of a window that is hidden. This event comes before the window is shown
    // again, except where it comes from the window manager itself.
    auto* const window = qobject_cast<QWidget*>(watched);
    if (window && event->type() == QEvent::Show && !event->spontaneous())
        apply(*window, false);
    return false;
}

void TaskbarActivationPolicy::apply(QWidget& window, bool isShown) const
{
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection())
        return;
    const bool isListed = m_policy == ActivationPolicy::regular;
    WindowListing::setListed(*x11->connection(), static_cast<xcb_window_t>(window.winId()), isListed, isShown);
}

std::unique_ptr<ActivationPolicySwitch> makeActivationPolicySwitch()
{
    return std::make_unique<TaskbarActivationPolicy>();
}

} // namespace tallyfox
