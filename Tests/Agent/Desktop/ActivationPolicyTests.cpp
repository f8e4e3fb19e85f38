#include "Support/Agent/PrivateDisplay.h"
#include "Tallyfox/Agent/Desktop/ActivationPolicy.h"
#include "Tallyfox/Agent/Desktop/Display.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>
#include <xcb/xcb.h>

namespace tallyfox::test {
namespace {

/// An X server without a window manager, and a client of it.
class ActivationPolicyTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_connection = xcb_connect(m_display.name().toUtf8().constData(), nullptr);
        ASSERT_EQ(xcb_connection_has_error(m_connection), 0);
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        m_window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_root, 0, 0, 8, 8, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    }

    ~ActivationPolicyTest() override
    {
        if (m_connection)
            xcb_disconnect(m_connection);
    }

    xcb_atom_t atom(const char* name) const
    {
        return x11Atom(m_connection, name);
    }

    [[nodiscard]] std::vector<xcb_atom_t> states() const
    {
        const auto cookie = xcb_get_property(m_connection, 0, m_window, atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 0, 1024);
        const XcbReply<xcb_get_property_reply_t> reply{xcb_get_property_reply(m_connection, cookie, nullptr)};
        const auto* const first = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
        return {first, first + reply->value_len};
    }

    [[nodiscard]] std::vector<xcb_atom_t> unlisted() const
    {
        return {atom("_NET_WM_STATE_SKIP_TASKBAR"), atom("_NET_WM_STATE_SKIP_PAGER")};
    }

    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = 0;
    xcb_window_t m_window = 0;

private:
    PrivateDisplay m_display;
};

TEST_F(ActivationPolicyTest, hiddenWindowGetsAProperty)
{
    setWindowListed(m_connection, m_window, false, false);
    EXPECT_EQ(states(), unlisted());
    setWindowListed(m_connection, m_window, false, false);
    EXPECT_EQ(states(), unlisted());
    setWindowListed(m_connection, m_window, true, false);
    EXPECT_EQ(states(), std::vector<xcb_atom_t>{});
}

TEST_F(ActivationPolicyTest, otherStatesOfAHiddenWindowAreKept)
{
    const xcb_atom_t above = atom("_NET_WM_STATE_ABOVE");
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32, 1,
                        &above);
    setWindowListed(m_connection, m_window, false, false);
    EXPECT_EQ(states(), (std::vector<xcb_atom_t>{above, unlisted()[0], unlisted()[1]}));
    setWindowListed(m_connection, m_window, true, false);
    EXPECT_EQ(states(), std::vector<xcb_atom_t>{above});
}

TEST_F(ActivationPolicyTest, windowManagerIsAskedAboutAShownWindow)
{
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
    xcb_change_window_attributes(m_connection, m_root, XCB_CW_EVENT_MASK,
                                 &events); // makes this test the window manager
    for (const bool isListed : {false, true}) {
        setWindowListed(m_connection, m_window, isListed, true);
        const XcbReply<xcb_generic_event_t> event{xcb_wait_for_event(m_connection)};
        ASSERT_TRUE(event);
        ASSERT_EQ(event->response_type & 0x7F, XCB_CLIENT_MESSAGE);
        xcb_client_message_event_t message{};
        std::memcpy(&message, event.get(), sizeof message);
        EXPECT_EQ(message.window, m_window);
        EXPECT_EQ(message.type, atom("_NET_WM_STATE"));
        EXPECT_EQ(message.data.data32[0], isListed ? 0U : 1U);
        EXPECT_EQ((std::vector<xcb_atom_t>{message.data.data32[1], message.data.data32[2]}), unlisted());
        EXPECT_EQ(message.data.data32[3], 1U);
    }
    EXPECT_TRUE(states().empty());
}

TEST_F(ActivationPolicyTest, destroyedWindowIsIgnored)
{
    xcb_destroy_window(m_connection, m_window);
    setWindowListed(m_connection, m_window, false, true);
    setWindowListed(m_connection, m_window, false, false);
    EXPECT_EQ(xcb_connection_has_error(m_connection), 0);
}

} // namespace
} // namespace tallyfox::test
