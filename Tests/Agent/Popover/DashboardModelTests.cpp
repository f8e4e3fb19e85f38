#include "Agent/Popover/ProviderStates.h"
#include "Tallyfox/Agent/Popover/DashboardModel.h"

#include <gmock/gmock.h>

#include <limits>

namespace tallyfox::test {
namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

ProviderState stateWithTotal(std::int64_t total)
{
    ProviderState state;
    state.summary.totalTokens = total;
    return state;
}

std::vector<DailyUsage> days(std::vector<std::int64_t> tokens)
{
    std::vector<DailyUsage> days;
    for (const std::int64_t count : tokens)
        days.push_back({utcTime(2026, 11, 1) + std::chrono::days{days.size()}, count});
    return days;
}

ProviderState stateWithYear(std::vector<std::int64_t> tokens)
{
    ProviderState state;
    state.summary.last365Days = days(std::move(tokens));
    return state;
}

TEST(DashboardSums, withoutStatesAreZero)
{
    EXPECT_EQ(DashboardModel::todayTokens({}), 0);
    EXPECT_EQ(DashboardModel::totalTokens({}), 0);
    EXPECT_EQ(DashboardModel::hypotheticalCost({}), "$0.00");
}

TEST(DashboardSums, includeAllStates)
{
    const std::vector states{evenState(Provider::claude, 10), evenState(Provider::codex, 7)};
    EXPECT_EQ(DashboardModel::todayTokens(states), 17);
    EXPECT_EQ(DashboardModel::totalTokens(states), 510);
}

TEST(DashboardSums, moreThanSixtyFourBitsStopTheProgram)
{
    const std::vector states{stateWithTotal(largest), stateWithTotal(1)};
    EXPECT_EXIT(DashboardModel::totalTokens(states), testing::ExitedWithCode(1), "64 bits");
}

TEST(HypotheticalCost, isThreeDollarsPerMillionTokens)
{
    EXPECT_EQ(DashboardModel::hypotheticalCost(std::vector{stateWithTotal(1'234'567)}), "$3.70");
    EXPECT_EQ(DashboardModel::hypotheticalCost(std::vector{stateWithTotal(600'000), stateWithTotal(400'000)}), "$3.00");
    EXPECT_EQ(DashboardModel::hypotheticalCost(std::vector{stateWithTotal(1)}), "$0.00");
    EXPECT_EQ(DashboardModel::hypotheticalCost(std::vector{stateWithTotal(999'999'999'999)}), "$3000000.00");
}

TEST(DashboardPoints, areTheLastDaysOfTheRangeOfEachState)
{
    const std::vector states{evenState(Provider::claude, 1), evenState(Provider::codex, 2)};
    for (const std::int64_t range : {7, 30, 180}) {
        const auto points = DashboardModel::chartPoints(states, range);
        const auto count = static_cast<std::size_t>(range);
        ASSERT_EQ(points.size(), 2 * count);
        EXPECT_EQ(points[count - 1], (ChartPoint{"Claude", utcTime(2026, 11, 21), 1}));
        EXPECT_EQ(points[count].provider, "Codex");
        EXPECT_EQ(points[count].date, utcTime(2026, 11, 21) - std::chrono::days{range - 1});
    }
    EXPECT_TRUE(DashboardModel::chartPoints({}, 30).empty());
}

TEST(CombinedDays, noStatesGiveNoPoints)
{
    EXPECT_TRUE(DashboardModel::combinedDays({}).empty());
}

TEST(CombinedDays, areEmptyIfTheFirstStateHasNone)
{
    EXPECT_TRUE(DashboardModel::combinedDays(std::vector{stateWithYear({}), stateWithYear({1, 2})}).empty());
}

TEST(CombinedDays, areAddedUpByPositionWithTheDatesOfTheFirstState)
{
    ProviderState shifted = stateWithYear({10, 20, 30});
    for (DailyUsage& day : shifted.summary.last365Days)
        day.date += std::chrono::hours{1};
    const auto combined = DashboardModel::combinedDays(std::vector{stateWithYear({1, 2}), shifted});
    EXPECT_EQ(combined, days({11, 22}));
}

TEST(CombinedDays, wholeYearHas365Days)
{
    const std::vector states{evenState(Provider::claude, 1), evenState(Provider::codex, 2)};
    const auto combined = DashboardModel::combinedDays(states);
    ASSERT_EQ(combined.size(), 365U);
    EXPECT_EQ(combined.back(), (DailyUsage{utcTime(2026, 11, 21), 3}));
}

TEST(CombinedDays, laterStateWithFewerDaysStopsTheProgram)
{
    const std::vector states{stateWithYear({1, 2, 3}), stateWithYear({1, 2})};
    EXPECT_EXIT(DashboardModel::combinedDays(states), testing::ExitedWithCode(1),
                testing::StrEq("tallyfox: stopped: the daily series of the providers differ in length\n"));
}

TEST(CombinedDays, dayBeyondSixtyFourBitsStopsTheProgram)
{
    const std::vector states{stateWithYear({largest}), stateWithYear({1})};
    EXPECT_EXIT(DashboardModel::combinedDays(states), testing::ExitedWithCode(1), "64 bits");
}

TEST(MaxTokens, isThatOfTheBusiestDayButAtLeastOne)
{
    EXPECT_EQ(DashboardModel::maxTokens(days({3, 9, 4})), 9);
    EXPECT_EQ(DashboardModel::maxTokens(days({0, 0})), 1);
    EXPECT_EQ(DashboardModel::maxTokens(days({-5})), 1);
    EXPECT_EQ(DashboardModel::maxTokens({}), 1);
}

TEST(HeatOpacity, isProportionalToTheBusiestDay)
{
    EXPECT_DOUBLE_EQ(DashboardModel::heatOpacity(0, 1), 0.08);
    EXPECT_DOUBLE_EQ(DashboardModel::heatOpacity(1, 1), 1.0);
    EXPECT_DOUBLE_EQ(DashboardModel::heatOpacity(50, 100), 0.6);
    EXPECT_DOUBLE_EQ(DashboardModel::heatOpacity(100, 100), 1.0);
    EXPECT_GT(DashboardModel::heatOpacity(1, largest), 0.1999);
    EXPECT_DOUBLE_EQ(DashboardModel::heatOpacity(-4, 100), 0.08);
}

} // namespace
} // namespace tallyfox::test
