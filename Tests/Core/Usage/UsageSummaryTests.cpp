#include "Support/Moments.h"
#include "TallyfoxCore/Usage/UsageSummary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <numeric>
#include <vector>

namespace tallyfox::test {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;

const Instant noon = utcTime(2026, 11, 21, 12);

UsageSample sample(Instant timestamp, std::int64_t tokens, Provider provider = Provider::claude)
{
    UsageSample sample;
    sample.provider = provider;
    sample.timestamp = timestamp;
    sample.totalTokens = tokens;
    return sample;
}

UsageSummary summary(const std::vector<UsageSample>& samples, const Calendar& calendar = Calendar::utc(),
                     Instant now = noon)
{
    return {samples, now, calendar};
}

std::int64_t sumOf(const std::vector<DailyUsage>& series)
{
    return std::accumulate(series.begin(), series.end(), std::int64_t{0},
                           [](std::int64_t sum, const DailyUsage& day) { return sum + day.tokens; });
}

TEST(UsageSummary, withoutSamplesEveryDayIsThereWithNoTokens)
{
    const UsageSummary empty = summary({});
    EXPECT_EQ(empty.last365Days.size(), 365U);
    EXPECT_EQ(empty.last30Days.size(), 30U);
    EXPECT_EQ(sumOf(empty.last365Days), 0);
    EXPECT_EQ(empty.totalTokens, 0);
    EXPECT_EQ(empty.todayTokens, 0);
}

TEST(UsageSummary, daysAreConsecutiveAndEndToday)
{
    const UsageSummary figures = summary({});
    EXPECT_EQ(figures.last365Days.front().date, utcTime(2025, 11, 22));
    EXPECT_EQ(figures.last365Days.back().date, utcTime(2026, 11, 21));
    for (std::size_t index = 1; index < figures.last365Days.size(); ++index)
        EXPECT_EQ(figures.last365Days[index].date - figures.last365Days[index - 1].date, days{1});
    EXPECT_EQ(figures.last30Days.front().date, utcTime(2026, 10, 23));
    EXPECT_EQ(figures.last30Days.back(), figures.last365Days.back());
}

TEST(UsageSummary, samplesAroundMidnightFallOnDifferentDays)
{
    const Calendar berlin = zone("Europe/Berlin");
    const Instant midnight = utcTime(2026, 11, 20, 23);
    const UsageSummary figures = summary({sample(midnight - minutes{1}, 5), sample(midnight + minutes{1}, 7)}, berlin);
    EXPECT_EQ(figures.todayTokens, 7);
    EXPECT_EQ(figures.last30Days[28].tokens, 5);
    EXPECT_EQ(figures.totalTokens, 12);
}

TEST(UsageSummary, sampleThirtyDaysBeforeTodayCountsInTheYearOnly)
{
    const Instant today = utcTime(2026, 11, 21);
    const UsageSummary figures = summary({sample(today - days{30}, 3), sample(today - days{29}, 4)});
    EXPECT_EQ(figures.totalTokens, 4);
    EXPECT_EQ(figures.last30Days.front().tokens, 4);
    EXPECT_EQ(sumOf(figures.last365Days), 7);
}

TEST(UsageSummary, samplesOfTomorrowAndOfLongAgoAreIgnored)
{
    const UsageSummary figures = summary(
        {sample(noon + days{1}, 1), sample(utcTime(2026, 11, 22), 2), sample(noon - days{400}, 4),
         sample(utcTime(2025, 11, 22) - microseconds{1}, 8), sample(distantPast, 16), sample(distantFuture, 32)});
    EXPECT_EQ(sumOf(figures.last365Days), 0);
}

TEST(UsageSummary, samplesLaterTodayThanNowCount)
{
    EXPECT_EQ(summary({sample(utcTime(2026, 11, 22) - microseconds{1}, 9)}).todayTokens, 9);
    EXPECT_EQ(summary({sample(utcTime(2025, 11, 22), 9)}).last365Days.front().tokens, 9);
}

TEST(UsageSummary, timeZoneDecidesTheDay)
{
    const std::vector<UsageSample> samples{sample(utcTime(2026, 11, 20, 20), 6)};
    EXPECT_EQ(summary(samples, zone("America/New_York")).todayTokens, 0);
    EXPECT_EQ(summary(samples, zone("Asia/Tokyo")).todayTokens, 6);
}

TEST(UsageSummary, samplesOfBothProvidersInAnyOrderAreAddedUp)
{
    const UsageSummary figures = summary({sample(noon, 1, Provider::codex), sample(noon - days{3}, 10),
                                          sample(noon - hours{1}, 100), sample(noon - days{3}, 1000, Provider::codex)});
    EXPECT_EQ(figures.todayTokens, 101);
    EXPECT_EQ(figures.last30Days[26].tokens, 1010);
}

TEST(UsageSummary, negativeTotalsAreAddedUnchanged)
{
    EXPECT_EQ(summary({sample(noon, 10), sample(noon, -25)}).todayTokens, -15);
}

TEST(UsageSummary, seriesIsClampedToOneAndTo365Days)
{
    const UsageSummary figures = summary({sample(noon, 1)});
    EXPECT_EQ(figures.series(7).size(), 7U);
    EXPECT_EQ(figures.series(7).back(), figures.last365Days.back());
    EXPECT_EQ(figures.series(7).front(), figures.last365Days[358]);
    for (const std::int64_t tooFew : {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()})
        EXPECT_EQ(figures.series(tooFew), std::vector{figures.last365Days.back()});
    for (const std::int64_t tooMany : {std::int64_t{365}, std::int64_t{1000}, std::numeric_limits<std::int64_t>::max()})
        EXPECT_EQ(figures.series(tooMany), figures.last365Days);
}

TEST(UsageSummary, seriesOfAnAbsentSummaryIsEmpty)
{
    EXPECT_TRUE(UsageSummary{}.series(30).empty());
}

TEST(UsageSummary, equalityComparesAllFigures)
{
    EXPECT_EQ(summary({sample(noon, 1)}), summary({sample(noon + hours{1}, 1)}));
    EXPECT_NE(summary({sample(noon, 1)}), summary({sample(noon - days{1}, 1)}));
    EXPECT_NE(summary({}), summary({}, zone("Europe/Berlin")));
}

TEST(UsageSummary, dayThatTheZoneSkippedIsAbsent)
{
    const UsageSummary figures = summary({}, zone("Pacific/Apia"), utcTime(2012, 1, 15));
    EXPECT_EQ(figures.last365Days.size(), 364U);
    EXPECT_EQ(figures.last30Days.size(), 30U);
    EXPECT_EQ(figures.series(365).size(), 364U);
    EXPECT_EQ(figures.last30Days.front().date, utcTime(2011, 12, 16, 10)); // 30 days without 30 December
}

TEST(UsageSummary, daysOfClockChangesHoldTheirWholeLocalDay)
{
    const Calendar berlin = zone("Europe/Berlin");
    const Instant begin = utcTime(2026, 10, 24, 22); // of the day of 25 hours
    std::vector<UsageSample> samples;
    for (int hour = -1; hour <= 25; ++hour)
        samples.push_back(sample(begin + hours{hour}, 1));
    const UsageSummary figures = summary(samples, berlin, begin + hours{24});
    EXPECT_EQ(figures.todayTokens, 25);
    EXPECT_EQ(figures.totalTokens, 26);
}

TEST(UsageSummary, dayWithoutMidnightBeginsAfterTheChange)
{
    const Instant change = utcTime(2024, 9, 8, 4);
    const UsageSummary figures =
        summary({sample(change - microseconds{1}, 1), sample(change, 2)}, zone("America/Santiago"), change + hours{5});
    EXPECT_EQ(figures.last365Days.back(), (DailyUsage{change, 2}));
    EXPECT_EQ(figures.last365Days[363].tokens, 1);
}

TEST(UsageSummary, firstAndLastYearsAreSummedUp)
{
    for (const char* name : {"UTC", "Pacific/Kiritimati", "Etc/GMT+12"}) {
        for (const Instant now : {distantPast, distantFuture}) {
            const UsageSummary figures = summary({sample(now, 5)}, zone(name), now);
            EXPECT_EQ(figures.last365Days.size(), 365U) << name;
            EXPECT_EQ(figures.todayTokens, 5) << name;
        }
    }
}

TEST(UsageSummaryDeath, sumBeyond64BitsEndsTheProgram)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EXIT(summary({sample(noon, most), sample(noon, 1)}), testing::ExitedWithCode(1),
                "add up to more than 64 bits");
    EXPECT_EXIT(summary({sample(noon, most), sample(noon - days{1}, 1)}), testing::ExitedWithCode(1), "64 bits");
}

TEST(UsageSummary, largestSumIsExact)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(summary({sample(noon, most - 1), sample(noon, 1)}).totalTokens, most);
    EXPECT_EQ(summary({sample(noon - days{100}, most), sample(noon, 1)}).totalTokens, 1);
}

} // namespace
} // namespace tallyfox::test
