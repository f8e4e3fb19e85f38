#include "Support/Agent/FakeKdeService.h"
#include "Support/Agent/FakePortal.h"
#include "Support/Agent/OtherClient.h"
#include "Support/Agent/PrivateBus.h"
#include "Support/ScratchFolder.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"

#include <gmock/gmock.h>

#include <xcb/xproto.h>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ShortcutBackEnds, suitTheSession)
{
    constexpr auto portal = ShortcutBackEnd::portal;
    constexpr auto keyGrab = ShortcutBackEnd::keyGrab;
    EXPECT_THAT(shortcutBackEnds(u"xcb", false, ""), ElementsAre(keyGrab));
    EXPECT_THAT(shortcutBackEnds(u"xcb", true, "sway"), ElementsAre(portal, keyGrab));
    EXPECT_THAT(shortcutBackEnds(u"wayland", true, "ubuntu:GNOME"), ElementsAre(portal));
    EXPECT_THAT(shortcutBackEnds(u"wayland-egl", true, "X-KDE"), ElementsAre(portal));
    EXPECT_THAT(shortcutBackEnds(u"offscreen", true, "KDE"), IsEmpty());
}

TEST(ShortcutBackEnds, neverIncludeThePortalOnKdeWhereBindingOpensAWindow)
{
    constexpr auto kdeService = ShortcutBackEnd::kdeService;
    constexpr auto keyGrab = ShortcutBackEnd::keyGrab;
    EXPECT_THAT(shortcutBackEnds(u"xcb", false, "KDE"), ElementsAre(kdeService, keyGrab));
    EXPECT_THAT(shortcutBackEnds(u"xcb", true, "KDE"), ElementsAre(kdeService, keyGrab));
    EXPECT_THAT(shortcutBackEnds(u"wayland", true, "Vendor:KDE"), ElementsAre(kdeService));
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

    void startOnKde()
    {
        start({QStringLiteral("XDG_CURRENT_DESKTOP=KDE")});
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

    [[nodiscard]] bool areGrabbed() const
    {
        return !OtherClient{m_display}.grab(XCB_MOD_MASK_1 | XCB_MOD_MASK_4, keyOfB);
    }

    [[nodiscard]] Preferences stored() const
    {
        return UserDefaults{m_folder.path() / "tallyfox" / "tallyfox.ini"}.preferences();
    }

    inline static const QString activated = QStringLiteral("activated");
    inline static const QString notInForce = QStringLiteral("not in force");
    inline static const QString onRequest = QStringLiteral("on request");
    inline static const QString inForce = QStringLiteral("in force");
    static constexpr std::uint8_t keyOfB = 56;

    PrivateDisplay m_display;
    PrivateBus m_bus;
    QDBusConnection m_servicesBus = m_bus.connect();
    ScratchFolder m_folder;
    std::unique_ptr<Probe> m_probe;
};

TEST_F(GlobalShortcutTest, kdeServiceHasTheKeysAlone)
{
    const FakeKdeService service{m_servicesBus, FakeKdeService::usualKeys()};
    startOnKde();
    EXPECT_EQ(nextLine(), notInForce);
    EXPECT_EQ(nextLine(), inForce);
    ASSERT_TRUE(press());
    expectNothing();
    FakeKdeService::press(m_servicesBus);
    EXPECT_EQ(nextLine(), activated);
    EXPECT_EQ(service.callsOf("doRegister").size(), 1);
}

TEST_F(GlobalShortcutTest, keysThatTheUserHasRemovedOnKdeAreNotGrabbed)
{
    const FakeKdeService service{m_servicesBus, {{{0, 0, 0, 0}}}};
    startOnKde();
    EXPECT_EQ(nextLine(), notInForce);
    ASSERT_TRUE(spinUntil([&] { return service.callsOf("setShortcutKeys").size() == 2; }));
    expectNothing();
    ASSERT_TRUE(press());
    expectNothing();
}

TEST_F(GlobalShortcutTest, keysAreGrabbedOnKdeWhileItsServiceIsMissing)
{
    startOnKde();
    EXPECT_EQ(nextLine(), notInForce);
    EXPECT_EQ(nextLine(), inForce);
    ASSERT_TRUE(press());
    EXPECT_EQ(nextLine(), activated);

    std::optional<FakeKdeService> service{std::in_place, m_servicesBus, FakeKdeService::usualKeys()};
    bool wereGrabbed = true; // the service itself grabs them on X11, and would fail
    service->aboutToRegister = [&] { wereGrabbed = areGrabbed(); };
    EXPECT_EQ(nextLine(), notInForce);
    EXPECT_EQ(nextLine(), inForce);
    EXPECT_FALSE(wereGrabbed);
    ASSERT_TRUE(press());
    expectNothing();

    service.reset();
    ASSERT_TRUE(spinUntil([this] { return areGrabbed(); }));
    ASSERT_TRUE(press());
    EXPECT_EQ(nextLine(), activated);
    expectNothing();
}

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

TEST_F(GlobalShortcutTest, portalIsNeverCalledOnKdeOrX11)
{
    ASSERT_TRUE(UserDefaults{m_folder.path() / "tallyfox" / "tallyfox.ini"}.set(&Preferences::requestsShortcut, true));
    FakePortal portal{m_servicesBus, grantAll};
    for (const QStringList& session :
         {QStringList{QStringLiteral("XDG_CURRENT_DESKTOP=KDE"), QStringLiteral("XDG_SESSION_TYPE=wayland")},
          QStringList{QStringLiteral("XDG_CURRENT_DESKTOP=GNOME")}})
    {
        start(session);
        send("cr");
        nextLine();
        spinFor(300ms);
    }
    EXPECT_THAT(portal.service().calls(), IsEmpty());
}

} // namespace
} // namespace tallyfox::test
