#include "Agent/Popover/ProviderStates.h"
#include "Tallyfox/Agent/Popover/RankingModel.h"

#include <gmock/gmock.h>

#include <limits>

namespace tallyfox::test {
namespace {

TEST(Boards, areInTheOrderOfThePicker)
{
    EXPECT_THAT(RankingModel::boards(), testing::ElementsAre("Overall", "Claude", "Codex", "Gemini"));
}

TEST(MonthlyTotal, overallAddsUpAllProviders)
{
    const std::vector states{evenState(Provider::claude, 10), evenState(Provider::codex, 1)};
    EXPECT_EQ(RankingModel::monthlyTotal(states, "Overall"), 330);
    EXPECT_EQ(RankingModel::monthlyTotal(states, "Claude"), 300);
    EXPECT_EQ(RankingModel::monthlyTotal(states, "Codex"), 30);
}

TEST(MonthlyTotal, boardWithoutItsProviderIsZero)
{
    const std::vector states{evenState(Provider::claude, 10)};
    EXPECT_EQ(RankingModel::monthlyTotal(states, "Codex"), 0);
    EXPECT_EQ(RankingModel::monthlyTotal(states, "Gemini"), 0);
    EXPECT_EQ(RankingModel::monthlyTotal(states, "claude"), 0);
    EXPECT_EQ(RankingModel::monthlyTotal({}, "Overall"), 0);
}

TEST(MonthlyTotal, moreThanSixtyFourBitsStopTheProgram)
{
    std::vector<ProviderState> states(2);
    states[0].summary.totalTokens = std::numeric_limits<std::int64_t>::max();
    states[1].summary.totalTokens = 1;
    EXPECT_EXIT(RankingModel::monthlyTotal(states, "Overall"), testing::ExitedWithCode(1), "64 bits");
}

} // namespace
} // namespace tallyfox::test
