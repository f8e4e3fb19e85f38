#include "Support/Agent/FakeService.h"
#include "Support/Agent/PrivateBus.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/Desktop/NotificationCenter.h"

#include <gmock/gmock.h>

#include <optional>

namespace tallyfox::test {
namespace {

using testing::ElementsAre;

const QString serviceName = QStringLiteral("org.freedesktop.Notifications");
const QString question = QStringLiteral("GetCapabilities()");
const FakeService::Answer capabilities = answering({QStringList{QStringLiteral("body"), QStringLiteral("sound")}});

class NotificationCenterTest : public testing::Test {
protected:
    /// What the completion reports. Fails the test if it is called before the request returns, or not once.
    static std::optional<bool> answerOf(NotificationCenter& center)
    {
        std::optional<bool> answer;
        int calls = 0;
        center.requestAuthorization({.alert = true, .sound = true}, [&](bool granted) {
            answer = granted;
            ++calls;
        });
        EXPECT_FALSE(answer.has_value());
        spinUntil([&] { return answer.has_value(); });
        spinFor(std::chrono::milliseconds{20});
        EXPECT_EQ(calls, 1);
        return answer;
    }

    std::optional<bool> answerOfAService(const FakeService::Answer& reply)
    {
        FakeService service{m_bus.connect(), serviceName, reply};
        const auto center = makeNotificationCenter(m_bus.connect(), std::chrono::milliseconds{300});
        const auto answer = answerOf(*center);
        EXPECT_THAT(service.calls(), ElementsAre(question)) << "and nothing is posted";
        return answer;
    }

    PrivateBus m_bus;
};

TEST_F(NotificationCenterTest, serviceThatAnswersGrants)
{
    FakeService service{m_bus.connect(), serviceName, capabilities};
    const auto center = makeNotificationCenter(m_bus.connect());
    EXPECT_EQ(answerOf(*center), true);
    EXPECT_EQ(answerOf(*center), true);
    EXPECT_THAT(service.calls(), ElementsAre(question, question)) << "and nothing is posted";
}

TEST_F(NotificationCenterTest, refusingServiceDoesNotGrant)
{
    EXPECT_EQ(answerOfAService(refusing()), false);
}

TEST_F(NotificationCenterTest, silentServiceDoesNotGrantAtTheTimeout)
{
    EXPECT_EQ(answerOfAService(silent()), false);
}

TEST_F(NotificationCenterTest, replyOfAnotherTypeDoesNotGrant)
{
    EXPECT_EQ(answerOfAService(answering({5})), false);
}

TEST_F(NotificationCenterTest, emptyReplyDoesNotGrant)
{
    EXPECT_EQ(answerOfAService(answering({})), false);
}

TEST_F(NotificationCenterTest, busWithoutAServiceDoesNotGrant)
{
    const auto center = makeNotificationCenter(m_bus.connect());
    EXPECT_EQ(answerOf(*center), false);
}

TEST_F(NotificationCenterTest, sessionWithoutABusDoesNotGrant)
{
    const auto center = makeNotificationCenter(QDBusConnection{QStringLiteral("no such connection")});
    EXPECT_EQ(answerOf(*center), false);
}

TEST_F(NotificationCenterTest, lostBusDoesNotGrant)
{
    FakeService service{m_bus.connect(), serviceName, silent()};
    const auto center = makeNotificationCenter(m_bus.connect());
    std::optional<bool> answer;
    center->requestAuthorization({}, [&](bool granted) { answer = granted; });
    spinUntil([&] { return service.calls().size() == 1; });
    m_bus.kill();
    spinUntil([&] { return answer.has_value(); });
    EXPECT_EQ(answer, false);
}

TEST_F(NotificationCenterTest, destroyedCenterDoesNotCallTheCompletion)
{
    FakeService service{m_bus.connect(), serviceName, capabilities};
    bool isTold = false;
    {
        const auto center = makeNotificationCenter(m_bus.connect());
        center->requestAuthorization({}, [&](bool) { isTold = true; });
    }
    spinUntil([&] { return service.calls().size() == 1; });
    spinFor(std::chrono::milliseconds{50});
    EXPECT_FALSE(isTold);
}

} // namespace
} // namespace tallyfox::test
