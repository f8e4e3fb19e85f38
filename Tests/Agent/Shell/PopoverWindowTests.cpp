#include "Support/Agent/PrivateDisplay.h"
#include "Support/Agent/Probe.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/Desktop/Display.h"
#include "Tallyfox/Agent/Shell/PopoverWindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <gmock/gmock.h>

#include <set>
#include <xcb/xcb.h>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;
using testing::IsSupersetOf;

TEST(PopoverKind, dependsOnWhoPlacesWindowsAndDirectsTheInput)
{
    EXPECT_EQ(popoverKind(QStringLiteral("xcb"), false, false), PopoverKind::popup);
    EXPECT_EQ(popoverKind(QStringLiteral("xcb"), true, true), PopoverKind::x11Window);
    EXPECT_EQ(popoverKind(QStringLiteral("wayland"), true, false), PopoverKind::waylandWindow);
    EXPECT_EQ(popoverKind(QStringLiteral("wayland-egl"), true, false), PopoverKind::waylandWindow);
    EXPECT_EQ(popoverKind(QStringLiteral("wayland"), true, true), PopoverKind::layerSurface);
    EXPECT_EQ(popoverKind(QStringLiteral("offscreen"), true, false), PopoverKind::popup);
}

/// A popover that is open and has the focus, on the toolkit's own virtual screen.
class FocusedPopover : public testing::TestWithParam<PopoverKind> {
protected:
    void SetUp() override
    {
        open();
    }

    void open()
    {
        popover.open(std::nullopt, {});
        popover.activateWindow();
        ASSERT_TRUE(spinUntil([this] { return popover.isActiveWindow(); }));
    }

    void showAnotherWindow()
    {
        other.show();
        other.activateWindow();
    }

    PopoverWindow popover{GetParam()};
    QWidget other;
};

INSTANTIATE_TEST_SUITE_P(Kinds, FocusedPopover, testing::Values(PopoverKind::x11Window, PopoverKind::waylandWindow),
                         [](const auto& kind) { return kind.param == PopoverKind::x11Window ? "x11" : "wayland"; });

TEST_P(FocusedPopover, lossOfFocusClosesIt)
{
    showAnotherWindow();
    EXPECT_TRUE(spinUntil([this] { return !popover.isVisible(); }));
}

TEST_P(FocusedPopover, lossOfFocusIsRememberedOnlyWherePanelsTakeIt)
{
    EXPECT_FALSE(popover.hasJustLostFocus());
    showAnotherWindow();
    ASSERT_TRUE(spinUntil([this] { return !popover.isVisible(); }));
    EXPECT_EQ(popover.hasJustLostFocus(), GetParam() == PopoverKind::waylandWindow);
    open();
    EXPECT_FALSE(popover.hasJustLostFocus());
}

TEST_P(FocusedPopover, escapeClosesItWithoutALossOfFocus)
{
    QKeyEvent escape{QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier};
    QApplication::sendEvent(&popover, &escape);
    EXPECT_FALSE(popover.isVisible());
    EXPECT_FALSE(popover.hasJustLostFocus());
}

TEST_P(FocusedPopover, clickThatEndsOutsideLeavesItOpen)
{
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const QPointF outside{-20, -20};
        QMouseEvent event{type, outside, popover.mapToGlobal(outside), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier};
        QApplication::sendEvent(&popover, &event);
    }
    EXPECT_TRUE(popover.isVisible());
}

TEST_P(FocusedPopover, lateLossOfFocusOfAnEarlierOpeningDoesNotCloseIt)
{
    popover.hide();
    popover.open(std::nullopt, {});
    Q_EMIT qGuiApp->focusWindowChanged(nullptr);
    Q_EMIT qGuiApp->focusWindowChanged(popover.windowHandle());
    spinFor(500ms);
    EXPECT_TRUE(popover.isVisible());
}

TEST(PopoverWindow, clickOnARemovedScreenCountsAsNone)
{
    PopoverWindow popover{PopoverKind::popup};
    popover.open(std::nullopt, {});
    const QPoint position = popover.pos();
    popover.hide();
    popover.open(QPoint{5000, 5000}, {});
    EXPECT_EQ(popover.pos().x(), position.x());
    EXPECT_EQ(popover.pos().y(), position.y());
}

/// Another program on an X server.
class XClient {
public:
    explicit XClient(const QString& display)
        : m_connection{xcb_connect(display.toLatin1().constData(), nullptr)}
        , m_root{xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root}
    { }
    ~XClient()
    {
        xcb_disconnect(m_connection);
    }
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;

    /// Shows a window, which gets the focus, in the bottom right corner; the user was active in it at `userTime`.
    void showWindow(std::uint32_t userTime)
    {
        const xcb_window_t window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, m_root, 1100, 700, 100, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, x11Atom(m_connection, "_NET_WM_USER_TIME"),
                            XCB_ATOM_CARDINAL, 32, 1, &userTime);
        xcb_map_window(m_connection, window);
        ASSERT_TRUE(spinUntil([&] { return focus() == window; }));
    }

    [[nodiscard]] bool hasWindowManager() const
    {
        return !text(m_root, "_NET_SUPPORTING_WM_CHECK").isEmpty();
    }

    [[nodiscard]] xcb_window_t focus() const
    {
        const auto cookie = xcb_get_input_focus(m_connection);
        const XcbReply<xcb_get_input_focus_reply_t> reply{xcb_get_input_focus_reply(m_connection, cookie, nullptr)};
        return reply ? reply->focus : xcb_window_t{XCB_WINDOW_NONE};
    }

    /// The top left corner of a window on the screen.
    [[nodiscard]] std::pair<int, int> position(xcb_window_t window) const
    {
        const auto cookie = xcb_translate_coordinates(m_connection, window, m_root, 0, 0);
        const XcbReply<xcb_translate_coordinates_reply_t> reply{
            xcb_translate_coordinates_reply(m_connection, cookie, nullptr)};
        return reply ? std::pair<int, int>{reply->dst_x, reply->dst_y} : std::pair{-1, -1};
    }

    [[nodiscard]] QByteArray text(xcb_window_t window, const char* property) const
    {
        const auto cookie = xcb_get_property(m_connection, 0, window, x11Atom(m_connection, property),
                                             XCB_GET_PROPERTY_TYPE_ANY, 0, 1024);
        const XcbReply<xcb_get_property_reply_t> reply{xcb_get_property_reply(m_connection, cookie, nullptr)};
        return reply ? QByteArray{static_cast<const char*>(xcb_get_property_value(reply.get())),
                                  xcb_get_property_value_length(reply.get())}
                     : QByteArray{};
    }

    /// The names in a property that is a list of atoms.
    [[nodiscard]] std::set<std::string> names(xcb_window_t window, const char* property) const
    {
        const QByteArray bytes = text(window, property);
        std::set<std::string> result;
        for (qsizetype at = 0; at + 4 <= bytes.size(); at += 4) {
            xcb_atom_t atom = 0;
            std::copy_n(bytes.constData() + at, 4, reinterpret_cast<char*>(&atom));
            const auto cookie = xcb_get_atom_name(m_connection, atom);
            const XcbReply<xcb_get_atom_name_reply_t> name{xcb_get_atom_name_reply(m_connection, cookie, nullptr)};
            result.emplace(xcb_get_atom_name_name(name.get()),
                           static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get())));
        }
        return result;
    }

    void listenForStartups()
    {
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_connection, m_root, XCB_CW_EVENT_MASK, &mask);
        (void)focus(); // has a reply, so that the server has got this as well
    }

    /// The message about startups that has arrived, which comes in pieces; empty while its end is missing.
    [[nodiscard]] std::string startupMessage()
    {
        while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
            const auto* const message = reinterpret_cast<const xcb_client_message_event_t*>(event.get());
            if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE || message->format != 8)
                continue;
            if (message->type == x11Atom(m_connection, "_NET_STARTUP_INFO_BEGIN"))
                m_startupMessage.clear();
            m_startupMessage.append(std::begin(message->data.data8), std::end(message->data.data8));
        }
        const std::size_t end = m_startupMessage.find('\0');
        return end == std::string::npos ? std::string{} : m_startupMessage.substr(0, end);
    }

    bool grabPointer()
    {
        const auto cookie = xcb_grab_pointer(m_connection, 0, m_root, XCB_EVENT_MASK_BUTTON_PRESS, XCB_GRAB_MODE_ASYNC,
                                             XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME);
        const XcbReply<xcb_grab_pointer_reply_t> reply{xcb_grab_pointer_reply(m_connection, cookie, nullptr)};
        return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }

    bool grabKeyboard()
    {
        const auto cookie =
            xcb_grab_keyboard(m_connection, 0, m_root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        const XcbReply<xcb_grab_keyboard_reply_t> reply{xcb_grab_keyboard_reply(m_connection, cookie, nullptr)};
        return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }

    void releaseGrabs()
    {
        xcb_ungrab_pointer(m_connection, XCB_CURRENT_TIME);
        xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
        xcb_flush(m_connection);
    }

private:
    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    std::string m_startupMessage;
};

/// A popover in a process of its own, on an X server with a window manager.
class PopoverOnX11 : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(m_display.name().isEmpty()) << "no Xvfb";
        ASSERT_TRUE(spinUntil([this] { return m_other.hasWindowManager(); }));
    }

    void start(const char* kind)
    {
        m_popover = std::make_unique<Probe>(
            QStringLiteral(TALLYFOX_POPOVER_PROBE), QStringList{QString::fromLatin1(kind)},
            QStringList{QStringLiteral("DISPLAY=") + m_display.name(), QStringLiteral("QT_QPA_PLATFORM=xcb")});
        EXPECT_EQ(m_popover->nextLine().toStdString(), "ready");
    }

    void send(const std::string& command)
    {
        m_popover->process().write(QByteArray::fromStdString(command) + '\n');
    }

    /// Opens the popover with the click and token that are given; returns the number of its window.
    xcb_window_t open(const std::string& arguments)
    {
        send("open " + arguments);
        const QString line = m_popover->nextLine();
        EXPECT_TRUE(line.startsWith(QStringLiteral("shown "))) << line.toStdString();
        return line.section(QLatin1Char(' '), 1).toUInt();
    }

    xcb_window_t openWithFocus(const std::string& arguments)
    {
        const xcb_window_t window = open(arguments);
        EXPECT_TRUE(spinUntil([&] { return m_other.focus() == window; }));
        return window;
    }

    void close()
    {
        send("close");
        EXPECT_EQ(nextLine(), "hidden");
    }

    std::string nextLine()
    {
        return m_popover->nextLine().toStdString();
    }

    bool click(int x, int y)
    {
        return m_display.run(QStringLiteral("xdotool"),
                             {QStringLiteral("mousemove"), QString::number(x), QString::number(y),
                              QStringLiteral("click"), QStringLiteral("1")});
    }

    /// Repeats an input until the popover closes, because it may hold its grabs a little later.
    template <typename Input> bool isClosedBy(const Input& input)
    {
        for (int attempt = 0; attempt < 20; ++attempt) {
            EXPECT_TRUE(input());
            if (m_popover->nextLine(500ms) == QStringLiteral("hidden"))
                return true;
        }
        return false;
    }

    bool isOpenForAMoment()
    {
        return m_popover->nextLine(500ms).isNull();
    }

    PrivateDisplay m_display{QStringLiteral("1280x800x24")};
    Probe m_windowManager{
        QStringLiteral("openbox"), {QStringLiteral("--sm-disable")}, {QStringLiteral("DISPLAY=") + m_display.name()}};
    XClient m_other{m_display.name()};
    std::unique_ptr<Probe> m_popover;
};

TEST_F(PopoverOnX11, windowHasTheFocusBesideTheClickAndIsInNoTaskbar)
{
    start("window");
    const xcb_window_t window = openWithFocus("1000 5");
    EXPECT_EQ(m_other.position(window), std::pair(790, 29));
    EXPECT_THAT(m_other.names(window, "_NET_WM_STATE"),
                IsSupersetOf({"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER", "_NET_WM_STATE_ABOVE"}));
    EXPECT_TRUE(m_display.press(QStringLiteral("Escape")));
    EXPECT_EQ(nextLine(), "hidden");
}

TEST_F(PopoverOnX11, windowOpensAgainInItsPlaceAsOftenAsItIsClosed)
{
    start("window");
    for (int opening = 0; opening < 5; ++opening) {
        const xcb_window_t window = openWithFocus("1000 5");
        EXPECT_EQ(m_other.position(window), std::pair(790, 29));
        close();
    }
}

TEST_F(PopoverOnX11, focusOfAnotherWindowClosesTheWindow)
{
    start("window");
    openWithFocus("1000 5");
    m_other.showWindow(0x7fff0000);
    EXPECT_EQ(nextLine(), "hidden");
}

TEST_F(PopoverOnX11, focusOfAnotherWindowClosesTheWindowThatWasOpenedRightAfterItWasClosed)
{
    start("window");
    openWithFocus("1000 5");
    close();
    openWithFocus("1000 5");
    m_other.showWindow(0x7fff0000);
    EXPECT_EQ(nextLine(), "hidden");
}

TEST_F(PopoverOnX11, windowGetsTheFocusAlthoughTheUserWasLastActiveInAnotherOne)
{
    start("window");
    m_other.showWindow(0x7fff0000);
    for (int opening = 0; opening < 2; ++opening) {
        openWithFocus("600 5");
        EXPECT_TRUE(click(1150, 750));
        EXPECT_EQ(nextLine(), "hidden");
    }
}

TEST_F(PopoverOnX11, activationTokenIsOnTheWindowUnlessItIsNone)
{
    start("window");
    const xcb_window_t window = openWithFocus("1000 5 shell-1_TIME12345");
    EXPECT_EQ(m_other.text(window, "_NET_STARTUP_ID").toStdString(), "shell-1_TIME12345");
    close();
    open("1000 5 " + std::string(1000, 'x'));
    EXPECT_EQ(m_other.text(window, "_NET_STARTUP_ID").toStdString(), "");
}

TEST_F(PopoverOnX11, desktopLearnsThatTheWindowOfATokenIsThere)
{
    start("window");
    m_other.listenForStartups();
    openWithFocus(R"(1000 5 shell-1/"a\b"_TIME12345)");
    EXPECT_TRUE(spinUntil([&] { return !m_other.startupMessage().empty(); }));
    EXPECT_EQ(m_other.startupMessage(), R"(remove: ID="shell-1/\"a\\b\"_TIME12345")");
}

TEST_F(PopoverOnX11, clickOutsideAndEscapeCloseAPopup)
{
    start("popup");
    open("1000 5");
    EXPECT_TRUE(isClosedBy([&] { return click(100, 500); }));
    open("1000 5");
    EXPECT_TRUE(isClosedBy([&] { return m_display.press(QStringLiteral("Escape")); }));
}

TEST_F(PopoverOnX11, popupGetsThePointerWhenAnotherProgramReleasesIt)
{
    start("popup");
    ASSERT_TRUE(m_other.grabPointer());
    open("1000 5");
    EXPECT_TRUE(click(100, 500));
    EXPECT_TRUE(isOpenForAMoment());
    m_other.releaseGrabs();
    EXPECT_TRUE(isClosedBy([&] { return click(100, 500); }));
}

TEST_F(PopoverOnX11, popupGetsTheKeyboardWhenAnotherProgramReleasesIt)
{
    start("popup");
    ASSERT_TRUE(m_other.grabKeyboard());
    open("1000 5");
    EXPECT_TRUE(m_display.press(QStringLiteral("Escape")));
    EXPECT_TRUE(isOpenForAMoment());
    m_other.releaseGrabs();
    EXPECT_TRUE(isClosedBy([&] { return m_display.press(QStringLiteral("Escape")); }));
}

TEST_F(PopoverOnX11, popupGetsPointerAndKeyboardWhenAnotherProgramReleasesThem)
{
    start("popup");
    ASSERT_TRUE(m_other.grabKeyboard());
    ASSERT_TRUE(m_other.grabPointer());
    open("1000 5");
    EXPECT_TRUE(isOpenForAMoment());
    m_other.releaseGrabs();
    EXPECT_TRUE(isClosedBy([&] { return m_display.press(QStringLiteral("Escape")); }));
}

TEST_F(PopoverOnX11, hiddenPopupLeavesPointerAndKeyboardToOthers)
{
    start("popup");
    ASSERT_TRUE(m_other.grabPointer());
    open("1000 5");
    close();
    m_other.releaseGrabs();
    spinFor(500ms);
    EXPECT_TRUE(m_other.grabPointer());
    EXPECT_TRUE(m_other.grabKeyboard());
}

TEST_F(PopoverOnX11, popupStaysOpenWhenItIsOpenedRightAfterItWasClosed)
{
    start("popup");
    for (int opening = 0; opening < 10; ++opening) {
        open("1000 5");
        EXPECT_TRUE(isOpenForAMoment());
        close();
    }
}

} // namespace
} // namespace tallyfox::test
