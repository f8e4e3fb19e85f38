#include "Tallyfox/Agent/Desktop/WindowListing.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

namespace tallyfox::WindowListing {

namespace {

template <typename Reply> using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply> Owned<Reply> owned(Reply* reply)
{
    return {reply, &std::free};
}

xcb_atom_t atom(xcb_connection_t& connection, std::string_view name)
{
    const auto cookie = xcb_intern_atom(&connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const auto reply = owned(xcb_intern_atom_reply(&connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

struct Atoms {
    explicit Atoms(xcb_connection_t& connection)
        : state(atom(connection, "_NET_WM_STATE"))
        , unlisted{atom(connection, "_NET_WM_STATE_SKIP_TASKBAR"), atom(connection, "_NET_WM_STATE_SKIP_PAGER")}
    { }

    xcb_atom_t state;
    std::array<xcb_atom_t, 2> unlisted;
};

std::vector<xcb_atom_t> states(xcb_connection_t& connection, xcb_window_t window, xcb_atom_t property)
{
    constexpr std::uint32_t mostStates = 1024;
    const auto cookie = xcb_get_property(&connection, 0, window, property, XCB_ATOM_ATOM, 0, mostStates);
    const auto reply = owned(xcb_get_property_reply(&connection, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto* const first = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / static_cast<int>(sizeof(xcb_atom_t))};
}

/// States that are not about the listing stay.
void setProperty(xcb_connection_t& connection, xcb_window_t window, bool isListed, const Atoms& atoms)
{
    auto values = states(connection, window, atoms.state);
    std::erase_if(values, [&atoms](xcb_atom_t each) {
        return std::find(atoms.unlisted.begin(), atoms.unlisted.end(), each) != atoms.unlisted.end();
    });
    if (!isListed)
        values.insert(values.end(), atoms.unlisted.begin(), atoms.unlisted.end());
    xcb_change_property(&connection, XCB_PROP_MODE_REPLACE, window, atoms.state, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

void askWindowManager(xcb_connection_t& connection, xcb_window_t window, bool isListed, const Atoms& atoms)
{
    const auto geometry = owned(xcb_get_geometry_reply(&connection, xcb_get_geometry(&connection, window), nullptr));
    if (!geometry)
        return;
    constexpr std::uint32_t fromApplication = 1;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atoms.state;
    message.data.data32[0] = isListed ? 0 : 1; // remove or add
    message.data.data32[1] = atoms.unlisted[0];
    message.data.data32[2] = atoms.unlisted[1];
    message.data.data32[3] = fromApplication;
    std::array<char, 32> event{};
    const auto* const begin = reinterpret_cast<const char*>(&message);
    std::copy(begin, begin + sizeof message, event.begin());
    xcb_send_event(&connection, 0, geometry->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY, event.data());
}

} // namespace

void setListed(xcb_connection_t& connection, xcb_window_t window, bool isListed, bool isShown)
{
    const Atoms atoms{connection};
    if (isShown)
        askWindowManager(connection, window, isListed, atoms);
    else
        setProperty(connection, window, isListed, atoms);
    xcb_flush(&connection);
}

} // namespace tallyfox::WindowListing
