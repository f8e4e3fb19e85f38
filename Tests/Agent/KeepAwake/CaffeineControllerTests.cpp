#include "Support/Agent/FakeDesktop.h"
#include "Tallyfox/Agent/KeepAwake/CaffeineController.h"

#include <gmock/gmock.h>

namespace tallyfox::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CaffeineControllerTest : public testing::Test {
protected:
    CaffeineControllerTest()
    {
        QObject::connect(&m_controller, &CaffeineController::isEnabledPublished, &m_controller, [this](bool isEnabled) {
            EXPECT_EQ(isEnabled, m_controller.isEnabled());
            m_published.push_back(isEnabled);
        });
    }

    FakeSleepInhibitor m_inhibitor;
    CaffeineController m_controller{m_inhibitor};
    std::vector<bool> m_published;
};

TEST_F(CaffeineControllerTest, startsOffAndAsksNobody)
{
    EXPECT_FALSE(m_controller.isEnabled());
    EXPECT_THAT(m_inhibitor.reasons, IsEmpty());
}

TEST_F(CaffeineControllerTest, isOnOnceGranted)
{
    m_controller.toggle();
    EXPECT_FALSE(m_controller.isEnabled());
    EXPECT_THAT(m_inhibitor.reasons, ElementsAre(QStringLiteral("Tallyfox Keep Mac Awake")));
    Q_EMIT m_inhibitor.inhibition->began();
    EXPECT_TRUE(m_controller.isEnabled());
    EXPECT_THAT(m_published, ElementsAre(true));
}

TEST_F(CaffeineControllerTest, secondPressTurnsItOffAndThirdOnAgain)
{
    m_controller.toggle();
    Q_EMIT m_inhibitor.inhibition->began();
    m_controller.toggle();
    EXPECT_FALSE(m_controller.isEnabled());
    EXPECT_FALSE(m_inhibitor.inhibition);
    m_controller.toggle();
    EXPECT_TRUE(m_inhibitor.inhibition);
    Q_EMIT m_inhibitor.inhibition->began();
    EXPECT_TRUE(m_controller.isEnabled());
    EXPECT_THAT(m_published, ElementsAre(true, false, true));
    EXPECT_EQ(m_inhibitor.reasons.size(), 2U);
}

TEST_F(CaffeineControllerTest, pressWhileAskingCancels)
{
    m_controller.toggle();
    m_controller.toggle();
    EXPECT_FALSE(m_inhibitor.inhibition);
    EXPECT_FALSE(m_controller.isEnabled());
    EXPECT_THAT(m_published, IsEmpty()) << "it was never on";
}

TEST_F(CaffeineControllerTest, refusalLeavesItOffAndTheNextPressAsksAgain)
{
    m_controller.toggle();
    Q_EMIT m_inhibitor.inhibition->ended();
    EXPECT_FALSE(m_controller.isEnabled());
    EXPECT_FALSE(m_inhibitor.inhibition);
    EXPECT_THAT(m_published, IsEmpty());
    m_controller.toggle();
    EXPECT_TRUE(m_inhibitor.inhibition);
}

TEST_F(CaffeineControllerTest, lostServiceTurnsItOff)
{
    m_controller.toggle();
    Q_EMIT m_inhibitor.inhibition->began();
    Q_EMIT m_inhibitor.inhibition->ended();
    EXPECT_FALSE(m_controller.isEnabled());
    EXPECT_FALSE(m_inhibitor.inhibition);
    EXPECT_THAT(m_published, ElementsAre(true, false));
}

TEST_F(CaffeineControllerTest, activityIsReleasedWhenOffIsPublished)
{
    m_controller.toggle();
    Q_EMIT m_inhibitor.inhibition->began();
    bool isHeldAtPublication = true;
    QObject::connect(&m_controller, &CaffeineController::isEnabledPublished, &m_controller,
                     [&] { isHeldAtPublication = !m_inhibitor.inhibition.isNull(); });
    m_controller.toggle();
    EXPECT_FALSE(isHeldAtPublication);
}

TEST(CaffeineController, activityEndsWithTheController)
{
    FakeSleepInhibitor inhibitor;
    {
        CaffeineController controller{inhibitor};
        controller.toggle();
        Q_EMIT inhibitor.inhibition->began();
    }
    EXPECT_FALSE(inhibitor.inhibition);
}

} // namespace
} // namespace tallyfox::test
