#include "Tallyfox/Agent/Desktop/ActivationPolicy.h"

#include "Tallyfox/Agent/Desktop/Display.h"
#include "Tallyfox/Agent/Desktop/WindowManager.h"

#include <QEvent>
#include <QList>
#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <array>
#include <vector>
#include <xcb/xcb.h>

namespace tallyfox {

namespace {

struct Atoms {
    explicit Atoms(xcb_connection_t* connection)
        : state(x11Atom(connection, "_NET_WM_STATE"))
        , unlisted{x11Atom(connection, "_NET_WM_STATE_SKIP_TASKBAR"), x11Atom(connection, "_NET_WM_STATE_SKIP_PAGER")}
    { }

    xcb_atom_t state;
    std::array<xcb_atom_t, 2> unlisted;
};

std::vector<xcb_atom_t> windowStates(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property)
{
    constexpr std::uint32_t mostStates = 1024;
    const auto cookie = xcb_get_property(connection, 0, window, property, XCB_ATOM_ATOM, 0, mostStates);
    const XcbReply<xcb_get_property_reply_t> reply{xcb_get_property_reply(connection, cookie, nullptr)};
    if (!reply || reply->format != 32)
        return {};
    const auto* const first = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / static_cast<int>(sizeof(xcb_atom_t))};
}

/// Keeps all other states.
void setProperty(xcb_connection_t* connection, xcb_window_t window, bool isListed, const Atoms& atoms)
{
    auto values = windowStates(connection, window, atoms.state);
    std::erase_if(values, [&atoms](xcb_atom_t each) {
        return std::find(atoms.unlisted.begin(), atoms.unlisted.end(), each) != atoms.unlisted.end();
    });
    if (!isListed)
        values.insert(values.end(), atoms.unlisted.begin(), atoms.unlisted.end());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atoms.state, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

class TaskbarActivationPolicy : public QObject, public ActivationPolicySwitch {
public:
    void addWindow(QWidget& window) override
    {
        m_windows.removeAll(nullptr);
        m_windows += &window;
        window.installEventFilter(this);
        if (window.isVisible())
            apply(window, true);
    }

    void setPolicy(ActivationPolicy policy) override
    {
        m_policy = policy;
        for (const QPointer<QWidget>& window : m_windows) {
            if (window && window->isVisible())
                apply(*window, true);
        }
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // The window manager clears the state of a hidden window. This event comes before the window is shown again,
        // unless it is spontaneous, from the window manager.
        auto* const window = qobject_cast<QWidget*>(watched);
        if (window && event->type() == QEvent::Show && !event->spontaneous())
            apply(*window, false);
        return false;
    }

private:
    void apply(QWidget& window, bool isShown) const
    {
        if (xcb_connection_t* connection = x11Connection())
            setWindowListed(connection, static_cast<xcb_window_t>(window.winId()),
                            m_policy == ActivationPolicy::regular, isShown);
    }

    QList<QPointer<QWidget>> m_windows;
    ActivationPolicy m_policy = ActivationPolicy::accessory;
};

} // namespace

std::unique_ptr<ActivationPolicySwitch> makeActivationPolicySwitch()
{
    return std::make_unique<TaskbarActivationPolicy>();
}

void setWindowListed(xcb_connection_t* connection, std::uint32_t window, bool isListed, bool isShown)
{
    const Atoms atoms{connection};
    if (!isShown) {
        setProperty(connection, window, isListed, atoms);
        xcb_flush(connection);
        return;
    }
    constexpr std::uint32_t fromApplication = 1;
    const std::uint32_t removeOrAdd = isListed ? 0 : 1;
    askWindowManager(connection, window, "_NET_WM_STATE",
                     {removeOrAdd, atoms.unlisted[0], atoms.unlisted[1], fromApplication, 0});
}

} // namespace tallyfox
