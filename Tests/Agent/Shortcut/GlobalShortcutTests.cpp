#include "Support/Agent/FakePortal.h"
#include "Support/Agent/PrivateBus.h"
#include "Support/Agent/PrivateDisplay.h"
#include "Support/ScratchFolder.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"

#include <gmock/gmock.h>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ShortcutBackEnds, suitTheSession)
{
    constexpr auto portal = ShortcutBackEnd::portal;
    constexpr auto keyGrab = ShortcutBackEnd::keyGrab;
    EXPECT_THAT(shortcutBackEnds(u"xcb", false), ElementsAre(keyGrab));
    EXPECT_THAT(shortcutBackEnds(u"xcb", true), ElementsAre(portal, keyGrab));
    EXPECT_THAT(shortcutBackEnds(u"wayland", true), ElementsAre(portal));
    EXPECT_THAT(shortcutBackEnds(u"wayland-egl", true), ElementsAre(portal));
    EXPECT_THAT(shortcutBackEnds(u"offscreen", true), IsEmpty());
}

/// The program in a session with an X server and a bus.
class GlobalShortcutTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(m_display.name().isEmpty()) << "no Xvfb";
    }

    /// `session` are further environment variables.
    void start(const QStringList& session)
    {
        m_probe = std::make_unique<Probe>(
            QStringLiteral(TALLYFOX_SHORTCUT_PROBE), QStringList{QStringLiteral("--states")},
            QStringList{QStringLiteral("DISPLAY=") + m_display.name(), QStringLiteral("QT_QPA_PLATFORM=xcb"),
                        QStringLiteral("DBUS_SESSION_BUS_ADDRESS=") + m_bus.address(),
                        QStringLiteral("XDG_CONFIG_HOME=") + QString::fromStdString(m_folder.path().string()),
                        QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("XDG_SESSION_TYPE")}
                + session);
        ASSERT_EQ(nextLine(), QStringLiteral("ready"));
    }

    void startOnWayland()
    {
        start({QStringLiteral("XDG_CURRENT_DESKTOP=GNOME"), QStringLiteral("XDG_SESSION_TYPE=wayland")});
    }

    void send(const char* command)
    {
        m_probe->process().write(command);
    }

    /// Also lets the services of this process answer meanwhile.
    QString nextLine(std::chrono::milliseconds timeout = 20s)
    {
        QProcess& process = m_probe->process();
        const bool isThere = QTest::qWaitFor([&] { return process.canReadLine(); }, static_cast<int>(timeout.count()));
        return isThere ? QString::fromUtf8(process.readLine()).trimmed() : QString{};
    }

    void expectNothing()
    {
        EXPECT_TRUE(nextLine(300ms).isNull());
    }

    [[nodiscard]] bool press()
    {
        return m_display.press(QStringLiteral("super+alt+b"));
    }

    [[nodiscard]] Preferences stored() const
    {
        return UserDefaults{m_folder.path() / "tallyfox" / "tallyfox.ini"}.preferences();
    }

    inline static const QString activated = QStringLiteral("activated");
    inline static const QString notInForce = QStringLiteral("not in force");
    inline static const QString onRequest = QStringLiteral("on request");
    inline static const QString inForce = QStringLiteral("in force");

    PrivateDisplay m_display;
    PrivateBus m_bus;
    QDBusConnection m_servicesBus = m_bus.connect();
    ScratchFolder m_folder;
    std::unique_ptr<Probe> m_probe;
};

std::optional<PortalDecision> grantAll(const QDBusMessage& call)
{
    const QString session = QStringLiteral("/org/freedesktop/portal/desktop/session/1_2/theSession");
    if (call.member() == QStringLiteral("CreateSession"))
        return PortalDecision{.results = {{QStringLiteral("session_handle"), session}}};
    return PortalDecision{.results = {{QStringLiteral("shortcuts"), call.arguments().at(1)}}};
}

TEST_F(GlobalShortcutTest, portalIsNotCalledAtTheStart)
{
    FakePortal portal{m_servicesBus, grantAll};
    startOnWayland();
    EXPECT_EQ(nextLine(), notInForce);
    ASSERT_TRUE(press());
    EXPECT_EQ(nextLine(), activated) << "the grab works while an X11 window has the focus";
    expectNothing();
    EXPECT_THAT(portal.service().calls(), IsEmpty());
    EXPECT_FALSE(stored().requestsShortcut);
}

TEST_F(GlobalShortcutTest, portalThatTheUserWantsToAskIsAskedAtTheNextStartToo)
{
    FakePortal portal{m_servicesBus, grantAll};
    startOnWayland();
    EXPECT_EQ(nextLine(), notInForce);
    send("c");
    EXPECT_EQ(nextLine(), onRequest);
    EXPECT_THAT(portal.callsOf("CreateSession"), IsEmpty());
    send("r");
    EXPECT_EQ(nextLine(), inForce);
    EXPECT_TRUE(stored().requestsShortcut);
    ASSERT_TRUE(press());
    expectNothing();

    startOnWayland();
    EXPECT_EQ(nextLine(), notInForce);
    EXPECT_EQ(nextLine(), inForce);
    EXPECT_EQ(portal.callsOf("BindShortcuts").size(), 2);
}

TEST_F(GlobalShortcutTest, portalThatTheUserHasDeclinedIsNotAskedAtTheNextStart)
{
    ASSERT_TRUE(UserDefaults{m_folder.path() / "tallyfox" / "tallyfox.ini"}.set(&Preferences::requestsShortcut, true));
    FakePortal portal{m_servicesBus, [](const QDBusMessage& call) {
                          return call.member() == QStringLiteral("BindShortcuts") ? PortalDecision{.response = 1}
                                                                                  : grantAll(call);
                      }};
    startOnWayland();
    EXPECT_EQ(nextLine(), notInForce);
    EXPECT_EQ(nextLine(), onRequest);
    EXPECT_FALSE(stored().requestsShortcut);
    startOnWayland();
    EXPECT_EQ(nextLine(), notInForce);
    expectNothing();
    EXPECT_EQ(portal.callsOf("CreateSession").size(), 1);
}

TEST_F(GlobalShortcutTest, portalThatFailsDoesNotCostTheUsersConsent)
{
    ASSERT_TRUE(UserDefaults{m_folder.path() / "tallyfox" / "tallyfox.ini"}.set(&Preferences::requestsShortcut, true));
    const FakeService portal{m_servicesBus, QStringLiteral("org.freedesktop.portal.Desktop"), refusing()};
    startOnWayland();
    EXPECT_EQ(nextLine(), notInForce);
    expectNothing();
    EXPECT_EQ(portal.callsOf("CreateSession").size(), 1);
    EXPECT_TRUE(stored().requestsShortcut);
}

TEST_F(GlobalShortcutTest, portalIsNeverCalledOnX11)
{
    ASSERT_TRUE(UserDefaults{m_folder.path() / "tallyfox" / "tallyfox.ini"}.set(&Preferences::requestsShortcut, true));
    FakePortal portal{m_servicesBus, grantAll};
    start({QStringLiteral("XDG_CURRENT_DESKTOP=GNOME")});
    send("cr");
    EXPECT_EQ(nextLine(), inForce);
    spinFor(300ms);
    EXPECT_THAT(portal.service().calls(), IsEmpty());
}

} // namespace
} // namespace tallyfox::test
