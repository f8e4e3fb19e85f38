#include "Tallyfox/Agent/Shortcut/X11Keyboard.h"

#include <bit>
#include <cstdlib>
#include <memory>

// This header is C, and calls members by a word of C++.
#define explicit isExplicit
#include <xcb/xkb.h>
#undef explicit

namespace tallyfox {

namespace {

struct Free {
    void operator()(void* reply) const
    {
        std::free(reply); // what the library wants for its replies
    }
};

template <typename Reply> using ReplyPointer = std::unique_ptr<Reply, Free>;

constexpr unsigned groupCountMask = 0x0f;

/// The symbols of one key stand in one list, group after group.
std::vector<Keyboard::Group> groupsOf(const xcb_xkb_key_sym_map_t& key)
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
    const ReplyPointer<xcb_xkb_get_map_reply_t> reply{xcb_xkb_get_map_reply(connection, cookie, nullptr)};
    if (!reply)
        return;
    xcb_xkb_get_map_map_t map{};
    xcb_xkb_get_map_map_unpack(xcb_xkb_get_map_map(reply.get()), reply->nTypes, reply->nKeySyms, reply->nKeyActions,
                               reply->totalActions, reply->totalKeyBehaviors, reply->virtualMods,
                               reply->totalKeyExplicit, reply->totalModMapKeys, reply->totalVModMapKeys, reply->present,
                               &map);
    auto keys = xcb_xkb_get_map_map_syms_rtrn_iterator(reply.get(), &map);
    for (std::uint8_t key = reply->firstKeySym; keys.rem > 0; ++key) {
        keyboard.keys[key] = groupsOf(*keys.data);
        xcb_xkb_key_sym_map_next(&keys);
    }
}

void readModifiers(xcb_connection_t* connection, Keyboard& keyboard)
{
    const auto cookie = xcb_get_modifier_mapping(connection);
    const ReplyPointer<xcb_get_modifier_mapping_reply_t> reply{
        xcb_get_modifier_mapping_reply(connection, cookie, nullptr)};
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
    const ReplyPointer<xcb_xkb_get_state_reply_t> reply{xcb_xkb_get_state_reply(connection, cookie, nullptr)};
    return reply ? reply->group : std::uint8_t{0};
}

} // namespace

X11Keyboard::X11Keyboard(xcb_connection_t* connection)
    : m_connection(connection)
{
    const auto cookie = xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    const ReplyPointer<xcb_xkb_use_extension_reply_t> reply{xcb_xkb_use_extension_reply(connection, cookie, nullptr)};
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

bool X11Keyboard::tellsOfChange(const xcb_generic_event_t& event, const Keyboard& before) const
{
    if (event.response_type == XCB_MAPPING_NOTIFY)
        return true;
    if (m_eventCode == 0 || event.response_type != m_eventCode)
        return false;
    switch (event.pad0) { // which event of the extension it is
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
    case XCB_XKB_MAP_NOTIFY:
        return true;
    case XCB_XKB_STATE_NOTIFY:
        return std::bit_cast<const xcb_xkb_state_notify_event_t*>(&event)->group != before.group;
    default:
        return false;
    }
}

} // namespace tallyfox
