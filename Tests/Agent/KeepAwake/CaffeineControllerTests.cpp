#include "Tallyfox/Agent/KeepAwake/CaffeineController.h"

#include <gmock/gmock.h>

namespace tallyfox {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FakeInhibition : public SleepInhibition {
public:
    explicit FakeInhibition(int& living)
        : m_living(living)
    {
        ++m_living;
    }
    ~FakeInhibition() override
    {
        --m_living;
    }

private:
    int& m_living;
};

class FakeInhibitor : public SleepInhibitor {
public:
    std::unique_ptr<SleepInhibition> begin(const QString& reason) override
    {
        auto inhibition = std::make_unique<FakeInhibition>(living);
        reasons += reason;
        last = inhibition.get();
        return inhibition;
    }

    int living = 0;
    QStringList reasons;
    SleepInhibition* last = nullptr;
};

class CaffeineControllerTest : public testing::Test {
protected:
    CaffeineControllerTest()
    {
        QObject::connect(&m_controller, &CaffeineController::isEnabledPublished, &m_controller, [this](bool isEnabled) {
            EXPECT_EQ(isEnabled, m_controller.isEnabled());
            m_published.push_back(isEnabled);
        });
    }

    FakeInhibitor m_inhibitor;
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
    Q_EMIT m_inhibitor.last->began();
    EXPECT_TRUE(m_controller.isEnabled());
    EXPECT_THAT(m_published, ElementsAre(true));
}

TEST_F(CaffeineControllerTest, secondPressEndsAndThirdBeginsAnew)
{
    m_controller.toggle();
    Q_EMIT m_inhibitor.last->began();
    m_controller.toggle();
    EXPECT_FALSE(m_controller.isEnabled());
    EXPECT_EQ(m_inhibitor.living, 0);
    m_controller.toggle();
    EXPECT_EQ(m_inhibitor.living, 1);
    Q_EMIT m_inhibitor.last->began();
    EXPECT_TRUE(m_controller.isEnabled());
    EXPECT_THAT(m_published, ElementsAre(true, false, true));
    EXPECT_EQ(m_inhibitor.reasons.size(), 2);
}

TEST_F(CaffeineControllerTest, pressWhileAskingCancels)
{
    m_controller.toggle();
    m_controller.toggle();
    EXPECT_EQ(m_inhibitor.living, 0);
    EXPECT_FALSE(m_controller.isEnabled());
    EXPECT_THAT(m_published, IsEmpty()) << "it was never on";
}

TEST_F(CaffeineControllerTest, refusalLeavesItOffAndTheNextPressAsksAgain)
{
    m_controller.toggle();
    Q_EMIT m_inhibitor.last->ended();
    EXPECT_FALSE(m_controller.isEnabled());
    EXPECT_EQ(m_inhibitor.living, 0);
    EXPECT_THAT(m_published, IsEmpty());
    m_controller.toggle();
    EXPECT_EQ(m_inhibitor.living, 1);
}

TEST_F(CaffeineControllerTest, lostServiceTurnsItOff)
{
    m_controller.toggle();
    Q_EMIT m_inhibitor.last->began();
    Q_EMIT m_inhibitor.last->ended();
    EXPECT_FALSE(m_controller.isEnabled());
    EXPECT_EQ(m_inhibitor.living, 0);
    EXPECT_THAT(m_published, ElementsAre(true, false));
}

TEST_F(CaffeineControllerTest, activityIsReleasedWhenOffIsPublished)
{
    m_controller.toggle();
    Q_EMIT m_inhibitor.last->began();
    int livingAtPublication = -1;
    QObject::connect(&m_controller, &CaffeineController::isEnabledPublished, &m_controller,
                     [&] { livingAtPublication = m_inhibitor.living; });
    m_controller.toggle();
    EXPECT_EQ(livingAtPublication, 0);
}

TEST(CaffeineController, activityEndsWithTheController)
{
    FakeInhibitor inhibitor;
    {
        CaffeineController controller{inhibitor};
        controller.toggle();
        Q_EMIT inhibitor.last->began();
    }
    EXPECT_EQ(inhibitor.living, 0);
}

} // namespace
} // namespace tallyfox
