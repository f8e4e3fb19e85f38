#include "Tallyfox/Agent/Shortcut/X11Shortcut.h"

#include <QCoreApplication>

#include <algorithm>

namespace tallyfox {

namespace {

std::vector<xcb_window_t> rootWindows(xcb_connection_t* connection)
{
    std::vector<xcb_window_t> roots;
    for (auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection)); screens.rem > 0; xcb_screen_next(&screens))
        roots.push_back(screens.data->root);
    return roots;
}

template <typename Action>
void forEachGrab(xcb_connection_t* connection, const ShortcutKeys& keys, const Action& action)
{
    for (const xcb_window_t root : rootWindows(connection)) {
        for (const std::uint16_t modifiers : keys.combinations()) {
            for (const xcb_keycode_t key : keys.keys)
                action(root, modifiers, key);
        }
    }
}

} // namespace

X11Shortcut::X11Shortcut(xcb_connection_t* connection)
    : m_connection(connection)
    , m_source(connection)
{
    m_change.setSingleShot(true);
    connect(&m_change, &QTimer::timeout, this, &X11Shortcut::followKeyboard);
    QCoreApplication::instance()->installNativeEventFilter(this);
    followKeyboard();
}

X11Shortcut::~X11Shortcut()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
    release();
    xcb_flush(m_connection);
}

bool X11Shortcut::nativeEventFilter(const QByteArray& type, void* message, qintptr*)
{
    if (type != "xcb_generic_event_t")
        return false;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    if (m_source.tellsOfChange(event, m_keyboard))
        m_change.start(0);
    // What other programs send, instead of the server, has one more bit set and is not meant here.
    if (event.response_type == XCB_KEY_PRESS)
        return take(*static_cast<const xcb_key_press_event_t*>(message));
    if (event.response_type == XCB_KEY_RELEASE) {
        const auto& release = *static_cast<const xcb_key_release_event_t*>(message);
        if (m_keys && std::find(m_keys->keys.begin(), m_keys->keys.end(), release.detail) != m_keys->keys.end())
            m_releaseTime = release.time;
    }
    return false;
}

bool X11Shortcut::take(const xcb_key_press_event_t& press)
{
    // The window does not matter: while a popup has the keyboard, the keys are told to that popup.
    if (!m_keys || !m_keys->match(press.detail, press.state))
        return false;
    // A key that is held is let go and pressed again by the server at one and the same moment.
    if (m_releaseTime != press.time)
        QMetaObject::invokeMethod(this, "activated", Qt::QueuedConnection);
    return true;
}

void X11Shortcut::followKeyboard()
{
    m_keyboard = m_source.read();
    const std::optional<ShortcutKeys> keys = shortcutKeys(m_keyboard);
    if (keys == m_keys)
        return;
    release();
    m_keys = keys;
    grab();
}

void X11Shortcut::grab()
{
    if (!m_keys)
        return;
    forEachGrab(m_connection, *m_keys, [this](xcb_window_t root, std::uint16_t modifiers, xcb_keycode_t key) {
        const auto cookie =
            xcb_grab_key_checked(m_connection, 1, root, modifiers, key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        // A refusal would otherwise reach Qt, which tells the user of it on standard error.
        xcb_discard_reply(m_connection, cookie.sequence);
    });
    xcb_flush(m_connection);
}

void X11Shortcut::release()
{
    if (!m_keys)
        return;
    forEachGrab(m_connection, *m_keys, [this](xcb_window_t root, std::uint16_t modifiers, xcb_keycode_t key) {
        const auto cookie = xcb_ungrab_key_checked(m_connection, key, root, modifiers);
        xcb_discard_reply(m_connection, cookie.sequence);
    });
}

} // namespace tallyfox
