#include "Support/Agent/OtherClient.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <xcb/xproto.h>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;

const QString activated = QStringLiteral("activated");
const QString shown = QStringLiteral("shown");
const QString inForce = QStringLiteral("in force");
const QString notInForce = QStringLiteral("not in force");
constexpr const char* shortcut = "super+alt+b";

// Key codes, which do not depend on the layout.
constexpr std::uint8_t leftSuper = 133;
constexpr std::uint8_t leftAlt = 64;
constexpr std::uint8_t menu = 135;
constexpr std::uint8_t qwertyB = 56;
constexpr std::uint8_t dvorakB = 57;

/// An X server to run the program on.
class X11Shortcut : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(m_display.name().isEmpty()) << "no Xvfb";
        ASSERT_TRUE(run("setxkbmap -layout us"));
    }

    std::unique_ptr<Probe> start(const QStringList& arguments = {})
    {
        auto probe = std::make_unique<Probe>(
            QStringLiteral(TALLYFOX_SHORTCUT_PROBE), arguments,
            QStringList{QStringLiteral("DISPLAY=") + m_display.name(), QStringLiteral("QT_QPA_PLATFORM=xcb"),
                        QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("XDG_SESSION_TYPE"),
                        QStringLiteral("XDG_RUNTIME_DIR=") + m_folder.path()});
        EXPECT_EQ(probe->nextLine(), QStringLiteral("ready"));
        return probe;
    }

    /// Runs an X program with its arguments, separated by spaces.
    bool run(const char* command)
    {
        QStringList words = QString::fromLatin1(command).split(QLatin1Char(' '));
        return m_display.run(words.takeFirst(), words);
    }

    bool press(const char* keys)
    {
        return m_display.press(QString::fromLatin1(keys));
    }

    void pressWithModifiers(std::uint8_t code)
    {
        m_display.pressCodes({leftSuper, leftAlt, code});
    }

    static void check(Probe& probe)
    {
        probe.process().write("c");
    }

    /// Presses the keys and releases them after the server has begun to repeat them.
    bool hold()
    {
        return run("xdotool keydown super keydown alt keydown b sleep 1.5 keyup b keyup alt keyup super");
    }

    /// Super on Mod3 instead of Mod4.
    bool moveSuper()
    {
        return m_display.run(QStringLiteral("xmodmap"),
                             {QStringLiteral("-e"), QStringLiteral("clear mod4"), QStringLiteral("-e"),
                              QStringLiteral("clear mod3"), QStringLiteral("-e"),
                              QStringLiteral("add mod3 = Super_L")});
    }

    /// Also gives the program the time that a user takes between two keys.
    static void expectNothing(Probe& probe)
    {
        EXPECT_TRUE(probe.nextLine(300ms).isNull());
    }

    PrivateDisplay m_display;
    QTemporaryDir m_folder;
};

TEST_F(X11Shortcut, keysActivateOnceEach)
{
    const auto probe = start();
    ASSERT_TRUE(press(shortcut));
    EXPECT_EQ(probe->nextLine(), activated);
    ASSERT_TRUE(press(shortcut));
    EXPECT_EQ(probe->nextLine(), activated);
    expectNothing(*probe);
}

TEST_F(X11Shortcut, otherKeysAndOtherModifiersDoNothing)
{
    const auto probe = start();
    for (const char* keys :
         {"b", "super+b", "alt+b", "ctrl+alt+b", "super+alt+shift+b", "super+alt+ctrl+b", "super+alt+n", "super+alt+v"})
        ASSERT_TRUE(press(keys));
    expectNothing(*probe);
}

TEST_F(X11Shortcut, locksMakeNoDifference)
{
    const auto probe = start();
    for (const char* lock : {"Num_Lock", "Caps_Lock", "Num_Lock"}) { // the first, both, the second
        ASSERT_TRUE(press(lock));
        ASSERT_TRUE(press(shortcut));
        EXPECT_EQ(probe->nextLine(), activated) << lock;
    }
    expectNothing(*probe);
}

TEST_F(X11Shortcut, keyFollowsTheLayout)
{
    const auto probe = start();
    ASSERT_TRUE(run("setxkbmap -layout us -variant dvorak"));
    expectNothing(*probe);
    pressWithModifiers(dvorakB);
    EXPECT_EQ(probe->nextLine(), activated);
    pressWithModifiers(qwertyB);
    expectNothing(*probe);
    ASSERT_TRUE(run("setxkbmap -layout de"));
    expectNothing(*probe);
    pressWithModifiers(qwertyB);
    EXPECT_EQ(probe->nextLine(), activated);
    pressWithModifiers(dvorakB);
    expectNothing(*probe);
}

TEST_F(X11Shortcut, keyFollowsASwitchOfTheLayout)
{
    ASSERT_TRUE(run("setxkbmap -layout us,us -variant ,dvorak -option grp:menu_toggle"));
    const auto probe = start();
    pressWithModifiers(qwertyB);
    EXPECT_EQ(probe->nextLine(), activated);
    expectNothing(*probe); // the first key of a keyboard also makes the program read the layout
    m_display.pressCodes({menu}); // to the second layout
    expectNothing(*probe);
    pressWithModifiers(dvorakB);
    EXPECT_EQ(probe->nextLine(), activated);
    pressWithModifiers(qwertyB);
    expectNothing(*probe);
}

TEST_F(X11Shortcut, layoutsWithoutTheLetterUseAnotherLayoutsKey)
{
    ASSERT_TRUE(run("setxkbmap -layout us,ru -option grp:menu_toggle"));
    const auto probe = start();
    m_display.pressCodes({menu});
    expectNothing(*probe);
    pressWithModifiers(qwertyB);
    EXPECT_EQ(probe->nextLine(), activated);
    ASSERT_TRUE(run("setxkbmap -layout ru"));
    expectNothing(*probe);
    pressWithModifiers(qwertyB);
    EXPECT_EQ(probe->nextLine(), activated);
    expectNothing(*probe);
}

TEST_F(X11Shortcut, modifiersAreReadFromTheServer)
{
    ASSERT_TRUE(moveSuper());
    const auto probe = start();
    pressWithModifiers(qwertyB);
    EXPECT_EQ(probe->nextLine(), activated);
    expectNothing(*probe);
}

TEST_F(X11Shortcut, changedModifiersAreFollowed)
{
    const auto probe = start();
    ASSERT_TRUE(moveSuper());
    expectNothing(*probe);
    pressWithModifiers(qwertyB);
    EXPECT_EQ(probe->nextLine(), activated);
    expectNothing(*probe);
}

TEST_F(X11Shortcut, heldKeyActivatesOnce)
{
    const auto probe = start();
    ASSERT_TRUE(hold());
    EXPECT_EQ(probe->nextLine(), activated);
    expectNothing(*probe);
    ASSERT_TRUE(press(shortcut));
    EXPECT_EQ(probe->nextLine(), activated);
}

TEST_F(X11Shortcut, popupThatHasTheKeyboardIsClosedByTheKeys)
{
    const auto probe = start({QStringLiteral("--popup")});
    for (int round = 0; round < 5; ++round) {
        ASSERT_TRUE(press(shortcut));
        EXPECT_EQ(probe->nextLine(), shown);
        ASSERT_TRUE(press(shortcut));
        EXPECT_EQ(probe->nextLine(), activated);
    }
    expectNothing(*probe);
}

TEST_F(X11Shortcut, heldKeyTogglesThePopupOnce)
{
    const auto probe = start({QStringLiteral("--popup")});
    ASSERT_TRUE(hold());
    EXPECT_EQ(probe->nextLine(), shown);
    expectNothing(*probe);
    ASSERT_TRUE(hold());
    EXPECT_EQ(probe->nextLine(), activated);
    expectNothing(*probe);
}

TEST_F(X11Shortcut, keysOfAnotherProgramStayWithIt)
{
    const auto first = start();
    const auto second = start();
    ASSERT_TRUE(press(shortcut));
    EXPECT_EQ(first->nextLine(), activated);
    expectNothing(*second);
    EXPECT_EQ(second->process().readAllStandardError().toStdString(), "") << "a refused grab is not printed";
    EXPECT_EQ(second->process().state(), QProcess::Running);
}

TEST_F(X11Shortcut, grabbedKeysAreInForce)
{
    const auto probe = start({QStringLiteral("--states")});
    EXPECT_EQ(probe->nextLine(), inForce);
    ASSERT_TRUE(press(shortcut));
    EXPECT_EQ(probe->nextLine(), activated);
    check(*probe);
    expectNothing(*probe);
    ASSERT_TRUE(press(shortcut));
    EXPECT_EQ(probe->nextLine(), activated);
}

TEST_F(X11Shortcut, keysThatAnotherClientHasAreNotInForceUntilItEnds)
{
    std::optional<OtherClient> other{std::in_place, m_display};
    ASSERT_TRUE(other->grab(XCB_MOD_MASK_1 | XCB_MOD_MASK_4, qwertyB));
    const auto probe = start({QStringLiteral("--states")});
    EXPECT_EQ(probe->nextLine(), notInForce);
    check(*probe);
    expectNothing(*probe);
    other.reset();
    check(*probe);
    EXPECT_EQ(probe->nextLine(), inForce);
    ASSERT_TRUE(press(shortcut));
    EXPECT_EQ(probe->nextLine(), activated);
}

TEST_F(X11Shortcut, keysAreNotInForceWhileTheWindowManagerHasTheSuperKey)
{
    const auto probe = start({QStringLiteral("--states")});
    EXPECT_EQ(probe->nextLine(), inForce);
    std::optional<OtherClient> manager{std::in_place, m_display};
    ASSERT_TRUE(manager->grabAlone(leftSuper));
    check(*probe);
    EXPECT_EQ(probe->nextLine(), notInForce);
    ASSERT_TRUE(press(shortcut));
    expectNothing(*probe);
    manager.reset();
    check(*probe);
    EXPECT_EQ(probe->nextLine(), inForce);
    ASSERT_TRUE(press(shortcut));
    EXPECT_EQ(probe->nextLine(), activated);
}

TEST_F(X11Shortcut, superKeyIsLeftToWindowManagersThatStartLater)
{
    const auto probe = start({QStringLiteral("--states")});
    EXPECT_EQ(probe->nextLine(), inForce);
    OtherClient manager{m_display};
    EXPECT_TRUE(manager.grabAlone(leftSuper));
}

TEST_F(X11Shortcut, keyboardWithoutSuperIsNotInForce)
{
    ASSERT_TRUE(m_display.run(QStringLiteral("xmodmap"), {QStringLiteral("-e"), QStringLiteral("clear mod4")}));
    const auto probe = start({QStringLiteral("--states")});
    EXPECT_EQ(probe->nextLine(), notInForce);
    ASSERT_TRUE(run("setxkbmap -layout us"));
    EXPECT_EQ(probe->nextLine(), inForce);
}

TEST_F(X11Shortcut, keysAreReleasedWhenTheirProgramEnds)
{
    start()->kill();
    const auto next = start();
    ASSERT_TRUE(press(shortcut));
    EXPECT_EQ(next->nextLine(), activated);
}

} // namespace
} // namespace tallyfox::test
