#include "Support/Agent/FakeKdeService.h"
#include "Support/Agent/OtherClient.h"
#include "Support/Agent/PrivateBus.h"
#include "Support/ScratchFolder.h"
#include "Support/SpinUntil.h"

#include <QDBusConnectionInterface>
#include <QStandardPaths>
#include <gtest/gtest.h>

#include <memory>
#include <xcb/xproto.h>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;

/// The program and KDE's own service for global shortcuts, with an X server and a bus.
class RealKdeService : public testing::Test {
protected:
    void SetUp() override
    {
        if (QStandardPaths::findExecutable(QStringLiteral("kglobalaccel5")).isEmpty())
            GTEST_SKIP() << "no kglobalaccel5";
        ASSERT_FALSE(m_display.name().isEmpty()) << "no Xvfb";
        FakeKdeService::registerTypes();
        startService();
    }

    void startService()
    {
        m_service = std::make_unique<Probe>(QStringLiteral("kglobalaccel5"), QStringList{}, environment());
        ASSERT_TRUE(spinUntil([this] { return isServiceThere(); }));
    }

    void endService()
    {
        m_service.reset();
        ASSERT_TRUE(spinUntil([this] { return !isServiceThere(); }));
    }

    void startProgram()
    {
        m_program = std::make_unique<Probe>(QStringLiteral(TALLYFOX_SHORTCUT_PROBE),
                                            QStringList{QStringLiteral("--states")}, environment());
        ASSERT_EQ(m_program->nextLine(), QStringLiteral("ready"));
        ASSERT_EQ(m_program->nextLine(), notInForce) << "the service has not answered yet";
    }

    void endProgram()
    {
        m_program->process().closeWriteChannel();
        ASSERT_TRUE(m_program->process().waitForFinished());
    }

    /// As System Settings does for the user.
    void assign(int key)
    {
        call(QStringLiteral("setForeignShortcutKeys"), actionId(QStringLiteral("tallyfox")), key);
    }

    QDBusMessage call(const QString& method, const QStringList& action, int key, const QVariantList& flags = {})
    {
        const FakeKdeService::Keys keys{{{key, 0, 0, 0}}};
        return call(method, QVariantList{action, QVariant::fromValue(keys)} + flags);
    }

    QDBusMessage call(const QString& method, const QVariantList& arguments)
    {
        QDBusMessage message =
            QDBusMessage::createMethodCall(QLatin1StringView{FakeKdeService::name}, QStringLiteral("/kglobalaccel"),
                                           QStringLiteral("org.kde.KGlobalAccel"), method);
        message.setArguments(arguments);
        const QDBusMessage reply = m_user.call(message);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
        return reply;
    }

    static QStringList actionId(const QString& component)
    {
        return {component, QStringLiteral("toggle-popover"), component, QStringLiteral("Any text")};
    }

    void expectLine(const QString& line)
    {
        EXPECT_EQ(m_program->nextLine(), line);
    }

    void expectNothing()
    {
        EXPECT_TRUE(m_program->nextLine(300ms).isNull());
    }

    bool press(const char* keys)
    {
        return m_display.press(QString::fromLatin1(keys));
    }

    bool hold(const char* first, const char* second, const char* third)
    {
        const auto key = [](const char* name) { return QString::fromLatin1(name); };
        const QString down = QStringLiteral("keydown");
        const QString up = QStringLiteral("keyup");
        return m_display.run(QStringLiteral("xdotool"),
                             {down, key("super"), down, key("alt"), down, key("b"), QStringLiteral("sleep"), key("1.5"),
                              up, key(first), up, key(second), up, key(third)});
    }

    inline static const QString activated = QStringLiteral("activated");
    inline static const QString notInForce = QStringLiteral("not in force");
    inline static const QString inForce = QStringLiteral("in force");
    static constexpr const char* usualKeys = "super+alt+b";
    static constexpr const char* otherKeys = "ctrl+alt+y";
    static constexpr int otherKey = 0x0c000059; ///< Ctrl+Alt+Y
    static constexpr std::uint8_t keyOfB = 56;

    PrivateDisplay m_display;

private:
    [[nodiscard]] QStringList environment() const
    {
        const QString folder = QString::fromStdString(m_folder.path().string());
        return {QStringLiteral("DISPLAY=") + m_display.name(),
                QStringLiteral("DBUS_SESSION_BUS_ADDRESS=") + m_bus.address(),
                QStringLiteral("HOME=") + folder,
                QStringLiteral("XDG_CONFIG_HOME=") + folder,
                QStringLiteral("XDG_CURRENT_DESKTOP=KDE"),
                QStringLiteral("QT_QPA_PLATFORM=xcb"),
                QStringLiteral("WAYLAND_DISPLAY"),
                QStringLiteral("XDG_SESSION_TYPE")};
    }

    [[nodiscard]] bool isServiceThere() const
    {
        return m_user.interface()->isServiceRegistered(QLatin1StringView{FakeKdeService::name});
    }

    PrivateBus m_bus;
    QDBusConnection m_user = m_bus.connect();
    ScratchFolder m_folder;
    std::unique_ptr<Probe> m_service;
    std::unique_ptr<Probe> m_program;
};

TEST_F(RealKdeService, keysActivateOnceEachHoweverLongTheyAreHeld)
{
    startProgram();
    expectLine(inForce);
    for (const auto& [first, second, third] : {std::tuple{"b", "alt", "super"}, std::tuple{"super", "alt", "b"}}) {
        ASSERT_TRUE(press(usualKeys));
        expectLine(activated);
        ASSERT_TRUE(hold(first, second, third));
        expectLine(activated);
        expectNothing();
    }
}

TEST_F(RealKdeService, keysThatTheUserHasChosenAreKept)
{
    startProgram();
    expectLine(inForce);
    assign(0);
    expectLine(notInForce);
    ASSERT_TRUE(press(usualKeys));
    expectNothing();
    assign(otherKey);
    expectLine(inForce);
    endProgram();

    startProgram();
    expectLine(inForce);
    ASSERT_TRUE(press(otherKeys));
    expectLine(activated);
    ASSERT_TRUE(press(usualKeys));
    expectNothing();
}

TEST_F(RealKdeService, restartedServiceHasTheKeysAgain)
{
    startProgram();
    expectLine(inForce);
    endService();
    startService();
    expectLine(notInForce);
    expectLine(inForce);
    ASSERT_TRUE(press(usualKeys));
    expectLine(activated);
    expectNothing();
}

TEST_F(RealKdeService, keysOfAnotherProgramStayWithIt)
{
    constexpr unsigned present = 2;
    const QStringList another = actionId(QStringLiteral("another"));
    call(QStringLiteral("doRegister"), {another});
    call(QStringLiteral("setShortcutKeys"), another, FakeKdeService::metaAltB, {present});
    startProgram();
    ASSERT_TRUE(press(usualKeys));
    expectNothing();
}

TEST_F(RealKdeService, keysAreFreeWhenTheProgramHasEnded)
{
    startProgram();
    expectLine(inForce);
    const auto isFree = [this] { return OtherClient{m_display}.grab(XCB_MOD_MASK_1 | XCB_MOD_MASK_4, keyOfB); };
    EXPECT_FALSE(isFree());
    endProgram();
    EXPECT_TRUE(spinUntil(isFree));
}

} // namespace
} // namespace tallyfox::test
