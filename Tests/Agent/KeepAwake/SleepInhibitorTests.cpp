#include "Support/Agent/FakePortal.h"
#include "Support/Agent/PrivateBus.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/KeepAwake/SleepInhibitor.h"

#include <QDBusUnixFileDescriptor>
#include <gmock/gmock.h>

#include <fcntl.h>
#include <unistd.h>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const QString reason = QStringLiteral("Tallyfox Keep Mac Awake");
const QString powerManagementName = QStringLiteral("org.freedesktop.PowerManagement");
const QString sessionManagerName = QStringLiteral("org.gnome.SessionManager");
const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString loginName = QStringLiteral("org.freedesktop.login1");

class SleepInhibitorTest : public testing::Test {
protected:
    /// The default timeout is one that no test reaches by accident.
    void ask(std::chrono::milliseconds timeout = 20s)
    {
        m_inhibitor =
            makeSleepInhibitor([this] { return m_program; }, [this] { return m_programOnSystemBus; }, timeout);
        m_inhibition = m_inhibitor->begin(reason);
        QObject::connect(m_inhibition.get(), &SleepInhibition::began, [this] { m_events += QStringLiteral("began"); });
        QObject::connect(m_inhibition.get(), &SleepInhibition::ended, [this] { m_events += QStringLiteral("ended"); });
        EXPECT_THAT(m_events, IsEmpty()) << "nothing is emitted before the event loop runs";
    }

    bool begins()
    {
        return spinUntil([this] { return !m_events.isEmpty(); }) && m_events.back() == QStringLiteral("began");
    }
    bool ends()
    {
        return spinUntil([this] { return m_events.contains(QStringLiteral("ended")); });
    }

    PrivateBus m_bus;
    PrivateBus m_systemBus;
    QDBusConnection m_program = m_bus.connect();
    QDBusConnection m_programOnSystemBus = m_systemBus.connect();
    std::unique_ptr<SleepInhibitor> m_inhibitor;
    std::unique_ptr<SleepInhibition> m_inhibition;
    QStringList m_events;
};

TEST_F(SleepInhibitorTest, powerManagementIsAskedFirstAndTakesItsCookieBack)
{
    FakeService power{m_bus.connect(), powerManagementName, answering({7U})};
    FakeService session{m_bus.connect(), sessionManagerName, answering({8U})};
    ask();
    ASSERT_TRUE(begins());
    EXPECT_THAT(power.calls(), ElementsAre(QStringLiteral("Inhibit(Tallyfox, Tallyfox Keep Mac Awake)")));
    m_inhibition.reset();
    ASSERT_TRUE(spinUntil([&] { return power.calls().size() == 2; }));
    EXPECT_EQ(power.calls().back(), QStringLiteral("UnInhibit(7)"));
    EXPECT_THAT(session.calls(), IsEmpty());
}

TEST_F(SleepInhibitorTest, sessionManagerIsNextAndIsAskedNotToSuspend)
{
    FakeService power{m_bus.connect(), powerManagementName, refusing()};
    FakeService session{m_bus.connect(), sessionManagerName, answering({8U})};
    ask();
    ASSERT_TRUE(begins());
    EXPECT_THAT(session.calls(),
                ElementsAre(QStringLiteral("Inhibit(org.tallyfox.tallyfox, 0, Tallyfox Keep Mac Awake, 4)")));
    m_inhibition.reset();
    ASSERT_TRUE(spinUntil([&] { return session.calls().size() == 2; }));
    EXPECT_EQ(session.calls().back(), QStringLiteral("Uninhibit(8)"));
}

TEST_F(SleepInhibitorTest, repliesOfWrongTypesAreRefusals)
{
    FakeService power{m_bus.connect(), powerManagementName, answering({QStringLiteral("7")})};
    FakeService session{m_bus.connect(), sessionManagerName, answering({})};
    FakeService portal{m_bus.connect(), portalName, answering({7U})};
    FakeService login{m_systemBus.connect(), loginName, answering({QStringLiteral("/dev/null")})};
    ask();
    ASSERT_TRUE(ends());
    EXPECT_THAT(m_events, ElementsAre(QStringLiteral("ended")));
    EXPECT_EQ(power.calls().size(), 1);
    EXPECT_EQ(session.calls().size(), 1);
    EXPECT_EQ(portal.calls().size(), 1);
    EXPECT_EQ(login.calls().size(), 1);
}

TEST_F(SleepInhibitorTest, silentServiceIsSkippedAtTheTimeout)
{
    FakeService power{m_bus.connect(), powerManagementName, silent()};
    FakeService session{m_bus.connect(), sessionManagerName, answering({8U})};
    ask(200ms);
    ASSERT_TRUE(begins());
    EXPECT_EQ(session.calls().size(), 1);
}

TEST_F(SleepInhibitorTest, lateGrantIsGivenBack)
{
    FakeService power{m_bus.connect(), powerManagementName, silent()};
    FakeService session{m_bus.connect(), sessionManagerName, answering({8U})};
    ask(200ms);
    ASSERT_TRUE(begins());
    power.bus().send(power.messages().front().createReply(7U));
    ASSERT_TRUE(spinUntil([&] { return power.calls().size() == 2; }));
    EXPECT_EQ(power.calls().back(), QStringLiteral("UnInhibit(7)"));
    EXPECT_EQ(session.calls().size(), 1) << "the inhibition in force is unchanged";
    EXPECT_EQ(m_events.size(), 1);
}

TEST_F(SleepInhibitorTest, grantOfACancelledRequestIsGivenBack)
{
    FakeService power{m_bus.connect(), powerManagementName, silent()};
    ask();
    ASSERT_TRUE(spinUntil([&] { return power.calls().size() == 1; }));
    m_inhibition.reset();
    power.bus().send(power.messages().front().createReply(7U));
    ASSERT_TRUE(spinUntil([&] { return power.calls().size() == 2; }));
    EXPECT_EQ(power.calls().back(), QStringLiteral("UnInhibit(7)"));
    EXPECT_THAT(m_events, IsEmpty());
}

TEST_F(SleepInhibitorTest, deathOfTheGrantingServiceEndsTheInhibition)
{
    std::optional<FakeService> power{std::in_place, m_bus.connect(), powerManagementName, answering({7U})};
    FakeService session{m_bus.connect(), sessionManagerName, answering({8U})};
    ask();
    ASSERT_TRUE(begins());
    power.reset();
    ASSERT_TRUE(ends());
    EXPECT_THAT(session.calls(), IsEmpty()) << "a new inhibition is up to the user";
}

TEST_F(SleepInhibitorTest, serviceThatDiesDuringTheRequestIsSkipped)
{
    std::optional<FakeService> power{std::in_place, m_bus.connect(), powerManagementName, silent()};
    FakeService session{m_bus.connect(), sessionManagerName, answering({8U})};
    ask();
    ASSERT_TRUE(spinUntil([&] { return power->calls().size() == 1; }));
    power.reset();
    ASSERT_TRUE(begins());
    EXPECT_EQ(session.calls().size(), 1);
}

TEST_F(SleepInhibitorTest, portalInhibitsUntilItsRequestIsClosed)
{
    FakePortal portal{m_bus.connect(), [](const QDBusMessage&) { return PortalDecision{}; }};
    ask();
    ASSERT_TRUE(begins());
    const QDBusMessage call = portal.callsOf("Inhibit").front();
    EXPECT_EQ(call.interface(), QStringLiteral("org.freedesktop.portal.Inhibit"));
    EXPECT_EQ(call.arguments().at(1).toUInt(), 4U);
    EXPECT_EQ(qdbus_cast<QVariantMap>(call.arguments().at(2)).value(QStringLiteral("reason")).toString(), reason);
    EXPECT_THAT(portal.callsOf("Close"), IsEmpty());
    m_inhibition.reset();
    ASSERT_TRUE(spinUntil([&] { return portal.callsOf("Close").size() == 1; }));
    EXPECT_EQ(portal.callsOf("Close").front().path(), FakePortal::handleOf(call));
}

TEST_F(SleepInhibitorTest, portalMayRespondBeforeItReplies)
{
    FakePortal portal{m_bus.connect(), [](const QDBusMessage&) { return PortalDecision{}; }};
    portal.respondsBeforeItReplies = true;
    ask();
    EXPECT_TRUE(begins());
}

TEST_F(SleepInhibitorTest, secondResponseOfThePortalIsIgnored)
{
    const QDBusConnection bus = m_bus.connect();
    FakePortal portal{bus, [&](const QDBusMessage& call) {
                          FakePortal::sendResponse(bus, FakePortal::handleOf(call), {});
                          return PortalDecision{};
                      }};
    ask();
    ASSERT_TRUE(begins());
    FakePortal::sendResponse(bus, FakePortal::handleOf(portal.callsOf("Inhibit").front()), {.response = 2});
    spinFor(100ms);
    EXPECT_THAT(m_events, ElementsAre(QStringLiteral("began")));
}

TEST_F(SleepInhibitorTest, refusingPortalIsSkipped)
{
    FakePortal portal{m_bus.connect(), [](const QDBusMessage&) { return PortalDecision{.response = 2}; }};
    ask();
    ASSERT_TRUE(ends());
    EXPECT_EQ(portal.callsOf("Close").size(), 1);
}

TEST_F(SleepInhibitorTest, undecidedPortalIsSkippedAtTheTimeout)
{
    FakePortal portal{m_bus.connect(), [](const QDBusMessage&) { return std::nullopt; }};
    ask(200ms);
    ASSERT_TRUE(ends());
    EXPECT_TRUE(spinUntil([&] { return portal.callsOf("Close").size() == 1; })) << "its request is withdrawn";
    EXPECT_THAT(m_events, ElementsAre(QStringLiteral("ended")));
}

TEST_F(SleepInhibitorTest, responsesOfOtherPeersAreIgnored)
{
    const QDBusConnection stranger = m_bus.connect();
    FakePortal portal{m_bus.connect(), [&](const QDBusMessage& call) -> std::optional<PortalDecision> {
                          FakePortal::sendResponse(stranger, FakePortal::handleOf(call), {});
                          return std::nullopt;
                      }};
    ask(500ms);
    ASSERT_TRUE(ends());
    EXPECT_THAT(m_events, ElementsAre(QStringLiteral("ended")));
}

TEST_F(SleepInhibitorTest, loginManagerInhibitsWhileTheDescriptorIsOpen)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
    std::optional<QDBusUnixFileDescriptor> held{std::in_place, ends[1]};
    close(ends[1]);
    FakeService login{m_systemBus.connect(), loginName, [&](const QDBusMessage& call) {
                          return call.createReply(QVariant::fromValue(*std::exchange(held, std::nullopt)));
                      }};
    ask();
    ASSERT_TRUE(begins());
    EXPECT_THAT(login.calls(), ElementsAre(QStringLiteral("Inhibit(idle, Tallyfox, Tallyfox Keep Mac Awake, block)")));
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), -1) << "it is open";
    m_inhibition.reset();
    EXPECT_TRUE(spinUntil([&] { return read(ends[0], &byte, 1) == 0; })) << "it is closed everywhere";
    close(ends[0]);
}

TEST_F(SleepInhibitorTest, lostBusEndsTheInhibition)
{
    FakeService power{m_bus.connect(), powerManagementName, answering({7U})};
    ask();
    ASSERT_TRUE(begins());
    m_bus.kill();
    EXPECT_TRUE(ends());
}

TEST_F(SleepInhibitorTest, withoutServicesTheInhibitionEnds)
{
    ask();
    EXPECT_TRUE(ends());
}

TEST_F(SleepInhibitorTest, withoutBusesTheInhibitionEnds)
{
    m_program = QDBusConnection{QString{}};
    m_programOnSystemBus = QDBusConnection{QString{}};
    ask();
    EXPECT_TRUE(ends());
}

TEST_F(SleepInhibitorTest, receiverMayDeleteTheInhibitionWhenItEnds)
{
    ask();
    QObject::connect(m_inhibition.get(), &SleepInhibition::ended, [this] { m_inhibition.reset(); });
    EXPECT_TRUE(spinUntil([this] { return !m_inhibition; }));
}

} // namespace
} // namespace tallyfox::test
