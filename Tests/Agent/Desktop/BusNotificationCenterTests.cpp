#include "Support/Agent/PrivateBus.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/Desktop/BusNotificationCenter.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <gtest/gtest.h>

#include <optional>

namespace tallyfox::test {
namespace {

/// A notification service that answers in one of several ways, and counts what it is asked.
class FakeNotifications : public QDBusVirtualObject {
public:
    enum class Manner { answers, refuses, isSilent, answersWithANumber, answersWithNothing };

    FakeNotifications(QDBusConnection bus, Manner manner)
        : m_manner(manner)
    {
        EXPECT_TRUE(bus.registerVirtualObject(QStringLiteral("/org/freedesktop/Notifications"), this));
        EXPECT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.Notifications")));
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override
    {
        return {};
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        if (message.interface() != QStringLiteral("org.freedesktop.Notifications"))
            return false;
        asked += message.member();
        if (m_manner == Manner::answers)
            bus.send(message.createReply(QStringList{QStringLiteral("body"), QStringLiteral("sound")}));
        else if (m_manner == Manner::refuses)
            bus.send(message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no")));
        else if (m_manner == Manner::answersWithANumber)
            bus.send(message.createReply(5));
        else if (m_manner == Manner::answersWithNothing)
            bus.send(message.createReply());
        return true;
    }

    QStringList asked;

private:
    Manner m_manner;
};

const QStringList oneQuestion{QStringLiteral("GetCapabilities")};

class BusNotificationCenterTest : public testing::Test {
protected:
    /// What the completion says; a test fails if that is nothing, or comes before the request has returned.
    static std::optional<bool> answerOf(BusNotificationCenter& center)
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

    std::optional<bool> answerOfAService(FakeNotifications::Manner manner)
    {
        FakeNotifications service{m_bus.connect(), manner};
        BusNotificationCenter center{m_bus.connect(), std::chrono::milliseconds{300}};
        const auto answer = answerOf(center);
        EXPECT_EQ(service.asked, oneQuestion); // and nothing is posted
        return answer;
    }

    PrivateBus m_bus;
};

TEST_F(BusNotificationCenterTest, serviceThatAnswersGrants)
{
    FakeNotifications service{m_bus.connect(), FakeNotifications::Manner::answers};
    BusNotificationCenter center{m_bus.connect()};
    EXPECT_EQ(answerOf(center), true);
    EXPECT_EQ(answerOf(center), true);
    EXPECT_EQ(service.asked, oneQuestion + oneQuestion); // and nothing is posted
}

TEST_F(BusNotificationCenterTest, refusingServiceDoesNotGrant)
{
    EXPECT_EQ(answerOfAService(FakeNotifications::Manner::refuses), false);
}

TEST_F(BusNotificationCenterTest, silentServiceDoesNotGrantAfterItsTime)
{
    EXPECT_EQ(answerOfAService(FakeNotifications::Manner::isSilent), false);
}

TEST_F(BusNotificationCenterTest, answerOfAnotherTypeDoesNotGrant)
{
    EXPECT_EQ(answerOfAService(FakeNotifications::Manner::answersWithANumber), false);
}

TEST_F(BusNotificationCenterTest, emptyAnswerDoesNotGrant)
{
    EXPECT_EQ(answerOfAService(FakeNotifications::Manner::answersWithNothing), false);
}

TEST_F(BusNotificationCenterTest, busWithoutAServiceDoesNotGrant)
{
    BusNotificationCenter center{m_bus.connect()};
    EXPECT_EQ(answerOf(center), false);
}

TEST_F(BusNotificationCenterTest, sessionWithoutABusDoesNotGrant)
{
    BusNotificationCenter center{QDBusConnection{QStringLiteral("no such connection")}};
    EXPECT_EQ(answerOf(center), false);
}

TEST_F(BusNotificationCenterTest, busThatDiesBeforeTheAnswerDoesNotGrant)
{
    FakeNotifications service{m_bus.connect(), FakeNotifications::Manner::isSilent};
    BusNotificationCenter center{m_bus.connect()};
    std::optional<bool> answer;
    center.requestAuthorization({}, [&](bool granted) { answer = granted; });
    spinUntil([&] { return service.asked == oneQuestion; });
    m_bus.kill();
    spinUntil([&] { return answer.has_value(); });
    EXPECT_EQ(answer, false);
}

TEST_F(BusNotificationCenterTest, nobodyIsToldWhenTheCenterGoesFirst)
{
    FakeNotifications service{m_bus.connect(), FakeNotifications::Manner::answers};
    bool isTold = false;
    {
        BusNotificationCenter center{m_bus.connect()};
        center.requestAuthorization({}, [&](bool) { isTold = true; });
    }
    spinUntil([&] { return service.asked == oneQuestion; });
    spinFor(std::chrono::milliseconds{50});
    EXPECT_FALSE(isTold);
}

} // namespace
} // namespace tallyfox::test
