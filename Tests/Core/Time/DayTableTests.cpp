#include "Support/Moments.h"
#include "TallyfoxCore/Time/DayTable.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

namespace tallyfox::test {
namespace {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::seconds;

TEST(DayTable, instantsOutsideOfTheTableHaveNoDay)
{
    const DayTable table{Calendar::utc(), localDay(2026, 11, 20), localDay(2026, 11, 21)};
    ASSERT_EQ(table.starts().size(), 2U);
    EXPECT_EQ(table.indexOf(utcTime(2026, 11, 20) - microseconds{1}), std::nullopt);
    EXPECT_EQ(table.indexOf(utcTime(2026, 11, 20)), 0U);
    EXPECT_EQ(table.indexOf(utcTime(2026, 11, 21) - microseconds{1}), 0U);
    EXPECT_EQ(table.indexOf(utcTime(2026, 11, 21)), 1U);
    EXPECT_EQ(table.indexOf(utcTime(2026, 11, 22) - microseconds{1}), 1U);
    EXPECT_EQ(table.indexOf(utcTime(2026, 11, 22)), std::nullopt);
    EXPECT_EQ(table.indexOf(distantPast), std::nullopt);
    EXPECT_EQ(table.indexOf(distantFuture), std::nullopt);
}

TEST(DayTable, minuteAfterMidnightThatFallsBackBelongsToTheNewDay)
{
    const DayTable table{zone("America/St_Johns"), localDay(2010, 11, 6), localDay(2010, 11, 7)};
    const Instant midnight = utcTime(2010, 11, 7, 2, 30);
    EXPECT_EQ(table.indexOf(midnight - microseconds{1}), 0U);
    EXPECT_EQ(table.indexOf(midnight), 1U);
    EXPECT_EQ(table.indexOf(midnight + seconds{60}), 0U);
    EXPECT_EQ(table.indexOf(midnight + minutes{60}), 1U);
}

TEST(DayTable, clockThatFallsBackOutOfTheLastDayComesBackToIt)
{
    const DayTable lastDayOnly{zone("America/St_Johns"), localDay(2010, 11, 7), localDay(2010, 11, 7)};
    const Instant midnight = utcTime(2010, 11, 7, 2, 30);
    EXPECT_EQ(lastDayOnly.indexOf(midnight), 0U);
    EXPECT_EQ(lastDayOnly.indexOf(midnight + seconds{60}), std::nullopt);
    EXPECT_EQ(lastDayOnly.indexOf(midnight + minutes{60}), 0U);

    const DayTable dayBeforeOnly{zone("America/St_Johns"), localDay(2010, 11, 6), localDay(2010, 11, 6)};
    EXPECT_EQ(dayBeforeOnly.indexOf(midnight), std::nullopt);
    EXPECT_EQ(dayBeforeOnly.indexOf(midnight + seconds{60}), 0U);
    EXPECT_EQ(dayBeforeOnly.indexOf(midnight + minutes{60}), std::nullopt);
}

TEST(DayTable, skippedDayIsLeftOut)
{
    const DayTable table{zone("Pacific/Apia"), localDay(2011, 12, 28), localDay(2011, 12, 31)};
    ASSERT_EQ(table.starts().size(), 3U);
    EXPECT_EQ(table.indexOf(utcTime(2011, 12, 30, 10) - microseconds{1}), 1U);
    EXPECT_EQ(table.indexOf(utcTime(2011, 12, 30, 10)), 2U);
}

TEST(DayTable, emptyRangeHoldsNothing)
{
    const DayTable table{Calendar::utc(), localDay(2026, 11, 21), localDay(2026, 11, 20)};
    EXPECT_TRUE(table.starts().empty());
    EXPECT_EQ(table.indexOf(utcTime(2026, 11, 21)), std::nullopt);
}

TEST(DayTable, lastDaysOfAllTimeAreLaidOut)
{
    const DayTable table{zone("Europe/Berlin"), localDay(10000, 12, 30), localDay(10001, 6, 1)};
    EXPECT_EQ(table.starts().size(), 2U);
}

struct Range {
    const char* zone;
    local_days first;
    local_days last;
};

void PrintTo(const Range& range, std::ostream* out)
{
    *out << range.zone << " for " << (range.last - range.first).count() + 1 << " days";
}

class DayTableOfZone : public testing::TestWithParam<Range> { };

TEST_P(DayTableOfZone, agreesWithTheCalendarOnRandomInstants)
{
    const Calendar calendar = zone(GetParam().zone);
    const DayTable table{calendar, GetParam().first, GetParam().last};
    ASSERT_TRUE(std::is_sorted(table.starts().begin(), table.starts().end()));
    const Instant first = table.starts().front() - days{2};
    const Instant last = table.starts().back() + days{3};
    std::mt19937_64 random{7};
    std::uniform_int_distribution<std::int64_t> moments{first.time_since_epoch().count(),
                                                        last.time_since_epoch().count()};
    for (int round = 0; round < 20'000; ++round) {
        const Instant instant{microseconds{moments(random)}};
        const local_days day = calendar.dayOf(instant);
        const auto index = table.indexOf(instant);
        ASSERT_EQ(index.has_value(), day >= GetParam().first && day <= GetParam().last);
        if (index) {
            ASSERT_EQ(table.starts()[*index], calendar.startOfDay(day));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Zones, DayTableOfZone,
                         testing::Values(Range{"Europe/Berlin", localDay(2025, 11, 22), localDay(2026, 11, 21)},
                                         Range{"America/St_Johns", localDay(2010, 11, 1), localDay(2010, 11, 12)},
                                         Range{"America/St_Johns", localDay(2010, 11, 7), localDay(2010, 11, 7)},
                                         Range{"Pacific/Apia", localDay(2011, 12, 20), localDay(2012, 1, 10)},
                                         Range{"Pacific/Kwajalein", localDay(1969, 9, 25), localDay(1969, 10, 5)},
                                         Range{"America/Santiago", localDay(2024, 9, 1), localDay(2024, 9, 12)},
                                         Range{"Australia/Lord_Howe", localDay(2026, 4, 1), localDay(2026, 10, 10)},
                                         Range{"Asia/Kathmandu", localDay(1985, 12, 20), localDay(1986, 1, 5)},
                                         Range{"NZST-12NZDT,M9.5.0,M4.1.0/3", localDay(2026, 1, 1),
                                               localDay(2026, 12, 31)}));

} // namespace
} // namespace tallyfox::test
