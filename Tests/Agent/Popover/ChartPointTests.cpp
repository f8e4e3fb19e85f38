#include "Agent/Popover/ProviderStates.h"
#include "Tallyfox/Agent/Popover/ChartPoint.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <gtest/gtest.h>

#include <set>

namespace tallyfox::test {
namespace {

TEST(ChartPoint, idIsProviderAndSecondsInShortestDecimal)
{
    EXPECT_EQ((ChartPoint{"Claude", instantFromUnixSeconds(1731628800), 5}.id()), "Claude-1731628800.0");
    EXPECT_EQ((ChartPoint{"Codex", instantFromUnixSeconds(1700000000), 5}.id()), "Codex-1700000000.0");
    EXPECT_EQ((ChartPoint{"Codex", instantFromUnixSeconds(0.5), 5}.id()), "Codex-0.5");
    EXPECT_EQ((ChartPoint{"Codex", instantFromUnixSeconds(-86400), 5}.id()), "Codex--86400.0");
}

TEST(ChartPoint, idIgnoresTokensButEqualityDoesNot)
{
    const ChartPoint point{"Claude", dailyNow, 1};
    const ChartPoint other{"Claude", dailyNow, 2};
    EXPECT_EQ(point.id(), other.id());
    EXPECT_NE(point, other);
}

TEST(TrendPoints, noStatesGiveNoPoints)
{
    EXPECT_TRUE(trendPoints({}).empty());
}

TEST(TrendPoints, pointsAreOrderedByStateThenDayIncludingZeros)
{
    const auto states = std::vector{dailyState(Provider::codex, [](int daysAgo) { return daysAgo == 3 ? 30 : 0; }),
                                    evenState(Provider::claude, 7)};
    const auto points = trendPoints(states);
    ASSERT_EQ(points.size(), 60U);
    EXPECT_EQ(points.front(), (ChartPoint{"Codex", utcTime(2026, 10, 23), 0}));
    EXPECT_EQ(points[26], (ChartPoint{"Codex", utcTime(2026, 11, 18), 30}));
    EXPECT_EQ(points[30], (ChartPoint{"Claude", utcTime(2026, 10, 23), 7}));
    EXPECT_EQ(points.back(), (ChartPoint{"Claude", utcTime(2026, 11, 21), 7}));
}

TEST(TrendPoints, idsOfTwoProvidersAreUnique)
{
    std::set<std::string> ids;
    for (const ChartPoint& point :
         trendPoints(std::vector{evenState(Provider::claude, 1), evenState(Provider::codex, 1)}))
        ids.insert(point.id());
    EXPECT_EQ(ids.size(), 60U);
}

TEST(ChartContent, everyProviderHasASeriesInItsColourEvenWithoutPoints)
{
    const ChartData data =
        chartContent(chartPoints(Provider::codex, evenState(Provider::codex, 4).summary.series(2)), Calendar::utc());
    ASSERT_EQ(data.series.size(), 2U);
    EXPECT_EQ(data.series[0], (ChartSeries{QStringLiteral("Claude"), Theme::claude(), {}}));
    EXPECT_EQ(data.series[1], (ChartSeries{QStringLiteral("Codex"), Theme::codex(), {{0, 4}, {1, 4}}}));
    EXPECT_EQ(data.days, (std::vector{QDate{2026, 11, 20}, QDate{2026, 11, 21}}));
}

TEST(ChartContent, seriesOfDifferentLengthShareTheirDays)
{
    const std::vector<ChartPoint> points{{"Claude", utcTime(2026, 11, 19), 1},
                                         {"Claude", utcTime(2026, 11, 20), 2},
                                         {"Codex", utcTime(2026, 11, 20), 3}};
    const ChartData data = chartContent(points, Calendar::utc());
    EXPECT_EQ(data.days.size(), 2U);
    EXPECT_EQ(data.series[1].values, (std::vector<ChartValue>{{1, 3}}));
}

TEST(ChartContent, daysAreInTheGivenCalendar)
{
    // Midnight of the 21st in Berlin.
    const std::vector<ChartPoint> points{{"Claude", utcTime(2026, 11, 20, 23), 1}};
    EXPECT_EQ(chartContent(points, zone("Europe/Berlin")).days.front(), (QDate{2026, 11, 21}));
}

} // namespace
} // namespace tallyfox::test
