#include "Support/Agent/OtherClient.h"

#include <cstdlib>
#include <xcb/xcb.h>
#include <xcb/xinput.h>

namespace tallyfox::test {

namespace {

constexpr xcb_input_device_id_t coreKeyboard = 3; ///< on every server

} // namespace

OtherClient::OtherClient(const PrivateDisplay& display)
    : m_connection(xcb_connect(display.name().toLatin1().constData(), nullptr))
    , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
{ }

OtherClient::~OtherClient()
{
    xcb_disconnect(m_connection);
}

bool OtherClient::grab(std::uint16_t modifiers, std::uint8_t key)
{
    const auto cookie =
        xcb_grab_key_checked(m_connection, 1, m_root, modifiers, key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    xcb_generic_error_t* const error = xcb_request_check(m_connection, cookie);
    std::free(error);
    return !error;
}

bool OtherClient::grabAlone(std::uint8_t key)
{
    constexpr std::uint32_t events = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
    constexpr std::uint32_t noModifiers = 0;
    const auto cookie = xcb_input_xi_passive_grab_device(m_connection, XCB_CURRENT_TIME, m_root, XCB_NONE, key,
                                                         coreKeyboard, 1, 1, XCB_INPUT_GRAB_TYPE_KEYCODE,
                                                         XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC,
                                                         XCB_INPUT_GRAB_OWNER_NO_OWNER, &events, &noModifiers);
    auto* const reply = xcb_input_xi_passive_grab_device_reply(m_connection, cookie, nullptr);
    const bool isFree = reply && reply->num_modifiers == 0; // the modifiers whose grab has failed
    std::free(reply);
    return isFree;
}

} // namespace tallyfox::test
