#include "Tallyfox/Agent/Shortcut/X11Shortcut.h"

#include "Tallyfox/Agent/Desktop/Display.h"

#include <QCoreApplication>

#include <algorithm>
#include <bit>

// This header is C, and has members whose name is a keyword of C++.
#define explicit isExplicit
#include <xcb/xkb.h>
#undef explicit
#include <xcb/xinput.h>

namespace tallyfox {

namespace {

constexpr unsigned groupCountMask = 0x0f;

/// The symbols of a key are in one list, group after group.
std::vector<Keyboard::Group> readGroups(const xcb_xkb_key_sym_map_t& key)
{
    const std::uint32_t* symbols = xcb_xkb_key_sym_map_syms(&key);
    std::vector<Keyboard::Group> groups(key.groupInfo & groupCountMask);
    for (Keyboard::Group& group : groups) {
        group.assign(symbols, symbols + key.width);
        symbols += key.width;
    }
    return groups;
}

void readSymbols(xcb_connection_t* connection, Keyboard& keyboard)
{
    const auto cookie = xcb_xkb_get_map(connection, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_MAP_PART_KEY_SYMS, 0, 0, 0, 0, 0,
                                        0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    const XcbReply<xcb_xkb_get_map_reply_t> reply{xcb_xkb_get_map_reply(connection, cookie, nullptr)};
    if (!reply)
        return;
    xcb_xkb_get_map_map_t map{};
    xcb_xkb_get_map_map_unpack(xcb_xkb_get_map_map(reply.get()), reply->nTypes, reply->nKeySyms, reply->nKeyActions,
                               reply->totalActions, reply->totalKeyBehaviors, reply->virtualMods,
                               reply->totalKeyExplicit, reply->totalModMapKeys, reply->totalVModMapKeys, reply->present,
                               &map);
    auto keys = xcb_xkb_get_map_map_syms_rtrn_iterator(reply.get(), &map);
    for (std::uint8_t key = reply->firstKeySym; keys.rem > 0; ++key) {
        keyboard.keys[key] = readGroups(*keys.data);
        xcb_xkb_key_sym_map_next(&keys);
    }
}

void readModifiers(xcb_connection_t* connection, Keyboard& keyboard)
{
    const auto cookie = xcb_get_modifier_mapping(connection);
    const XcbReply<xcb_get_modifier_mapping_reply_t> reply{xcb_get_modifier_mapping_reply(connection, cookie, nullptr)};
    if (!reply)
        return;
    const xcb_keycode_t* keys = xcb_get_modifier_mapping_keycodes(reply.get());
    for (std::vector<std::uint8_t>& modifier : keyboard.modifiers) {
        modifier.assign(keys, keys + reply->keycodes_per_modifier);
        keys += reply->keycodes_per_modifier;
    }
}

std::uint8_t readGroup(xcb_connection_t* connection)
{
    const auto cookie = xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD);
    const XcbReply<xcb_xkb_get_state_reply_t> reply{xcb_xkb_get_state_reply(connection, cookie, nullptr)};
    return reply ? reply->group : std::uint8_t{0};
}

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

/// Whether another client has grabbed one of the keys, alone, through the input extension as window managers do. Tried
/// by grabbing: the server is ours meanwhile, so that no window manager starts in between and misses its key.
bool isAnyKeyGrabbed(xcb_connection_t* connection, const std::vector<std::uint8_t>& keys)
{
    constexpr std::uint32_t events = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS;
    constexpr std::uint32_t noModifiers = 0;
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection, &xcb_input_id);
    if (!extension || !extension->present)
        return false;
    std::vector<xcb_input_xi_passive_grab_device_cookie_t> grabs;
    xcb_grab_server(connection);
    for (const xcb_window_t root : rootWindows(connection)) {
        for (const std::uint8_t key : keys) {
            grabs.push_back(xcb_input_xi_passive_grab_device(
                connection, XCB_CURRENT_TIME, root, XCB_NONE, key, XCB_INPUT_DEVICE_ALL_MASTER, 1, 1,
                XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC,
                XCB_INPUT_GRAB_OWNER_NO_OWNER, &events, &noModifiers));
            xcb_input_xi_passive_ungrab_device(connection, root, key, XCB_INPUT_DEVICE_ALL_MASTER, 1,
                                               XCB_INPUT_GRAB_TYPE_KEYCODE, &noModifiers);
        }
    }
    xcb_ungrab_server(connection);
    const auto refused = std::count_if(grabs.begin(), grabs.end(), [&](const auto& grab) {
        const XcbReply<xcb_input_xi_passive_grab_device_reply_t> reply{
            xcb_input_xi_passive_grab_device_reply(connection, grab, nullptr)};
        return reply && reply->num_modifiers > 0; // the modifiers whose grab has failed
    });
    return refused > 0;
}

} // namespace

X11Keyboard::X11Keyboard(xcb_connection_t* connection)
    : m_connection(connection)
{
    const auto cookie = xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    const XcbReply<xcb_xkb_use_extension_reply_t> reply{xcb_xkb_use_extension_reply(connection, cookie, nullptr)};
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (reply && reply->supported && extension)
        m_eventCode = extension->first_event;
}

Keyboard X11Keyboard::read() const
{
    Keyboard keyboard;
    if (m_eventCode == 0)
        return keyboard;
    readSymbols(m_connection, keyboard);
    readModifiers(m_connection, keyboard);
    keyboard.group = readGroup(m_connection);
    return keyboard;
}

bool X11Keyboard::isChange(const xcb_generic_event_t& event, const Keyboard& before) const
{
    if (event.response_type == XCB_MAPPING_NOTIFY)
        return true;
    if (m_eventCode == 0 || event.response_type != m_eventCode)
        return false;
    switch (event.pad0) { // the type of the event within the extension
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
    case XCB_XKB_MAP_NOTIFY:
        return true;
    case XCB_XKB_STATE_NOTIFY:
        return std::bit_cast<const xcb_xkb_state_notify_event_t*>(&event)->group != before.group;
    default:
        return false;
    }
}

X11Shortcut::X11Shortcut(xcb_connection_t* connection)
    : m_connection(connection)
    , m_x11Keyboard(connection)
{
    m_changeTimer.setSingleShot(true);
    connect(&m_changeTimer, &QTimer::timeout, this, &X11Shortcut::updateGrab);
    QCoreApplication::instance()->installNativeEventFilter(this);
    updateGrab();
}

X11Shortcut::~X11Shortcut()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
    release();
    xcb_flush(m_connection);
}

void X11Shortcut::check()
{
    updateState();
}

bool X11Shortcut::nativeEventFilter(const QByteArray& type, void* message, qintptr*)
{
    if (type != "xcb_generic_event_t")
        return false;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    if (m_x11Keyboard.isChange(event, m_keyboard))
        m_changeTimer.start(0);
    // Events that other programs have sent have one more bit set, and are ignored.
    if (event.response_type == XCB_KEY_PRESS)
        return handlePress(*static_cast<const xcb_key_press_event_t*>(message));
    if (event.response_type == XCB_KEY_RELEASE) {
        const auto& release = *static_cast<const xcb_key_release_event_t*>(message);
        if (m_keys && std::find(m_keys->keys.begin(), m_keys->keys.end(), release.detail) != m_keys->keys.end())
            m_releaseTime = release.time;
    }
    return false;
}

bool X11Shortcut::handlePress(const xcb_key_press_event_t& press)
{
    // In any window: while a popup has the keyboard, it gets the key events.
    if (!m_keys || !m_keys->match(press.detail, press.state))
        return false;
    // The server repeats a held key as a release and a press of the same time.
    if (m_releaseTime != press.time)
        QMetaObject::invokeMethod(this, "activated", Qt::QueuedConnection);
    return true;
}

void X11Shortcut::updateGrab()
{
    m_keyboard = m_x11Keyboard.read();
    const std::optional<ShortcutKeys> keys = findShortcutKeys(m_keyboard);
    if (keys == m_keys)
        return;
    release();
    m_keys = keys;
    updateState();
}

void X11Shortcut::updateState()
{
    const bool isInForce = grab() && !isAnyKeyGrabbed(m_connection, findSuperKeys(m_keyboard));
    setState(isInForce ? ShortcutState::inForce : ShortcutState::notInForce);
}

/// Returns whether all of them are ours; they may have been before.
bool X11Shortcut::grab()
{
    std::vector<xcb_void_cookie_t> grabs;
    if (m_keys) {
        forEachGrab(m_connection, *m_keys, [&](xcb_window_t root, std::uint16_t modifiers, xcb_keycode_t key) {
            grabs.push_back(
                xcb_grab_key_checked(m_connection, 1, root, modifiers, key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        });
    }
    const auto refused = std::count_if(grabs.begin(), grabs.end(), [this](xcb_void_cookie_t grab) {
        return XcbReply<xcb_generic_error_t>{xcb_request_check(m_connection, grab)} != nullptr;
    });
    return !grabs.empty() && refused == 0;
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
