#include "Support/Moments.h"
#include "Support/TimeZoneBytes.h"
#include "TallyfoxCore/Time/Calendar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace tallyfox::test {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::local_days;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::seconds;

seconds lengthOfDay(const Calendar& calendar, std::chrono::local_days day)
{
    return floor<seconds>(calendar.startOfDay(day + days{1}).value() - calendar.startOfDay(day).value());
}

TEST(Calendar, utcDayBeginsAtMidnightAndEndsOneMicrosecondBeforeTheNext)
{
    const Calendar calendar = Calendar::utc();
    EXPECT_EQ(calendar.timeZoneName(), "UTC");
    EXPECT_EQ(calendar.startOfDay(localDay(2026, 11, 21)), utcTime(2026, 11, 21));
    EXPECT_EQ(calendar.dayOf(utcTime(2026, 11, 22) - microseconds{1}), localDay(2026, 11, 21));
    EXPECT_EQ(calendar.dayOf(utcTime(2026, 11, 22)), localDay(2026, 11, 22));
}

TEST(Calendar, instantsBefore1970BelongToTheirDay)
{
    EXPECT_EQ(Calendar::utc().dayOf(utcTime(1970, 1, 1) - microseconds{1}), localDay(1969, 12, 31));
    EXPECT_EQ(zone("Asia/Tokyo").dayOf(utcTime(1969, 12, 31, 15)), localDay(1970, 1, 1));
}

TEST(Calendar, berlinDaysOfClockChangesHave23And25Hours)
{
    const Calendar calendar = zone("Europe/Berlin");
    EXPECT_EQ(lengthOfDay(calendar, localDay(2026, 3, 29)), hours{23});
    EXPECT_EQ(lengthOfDay(calendar, localDay(2026, 10, 25)), hours{25});
    EXPECT_EQ(lengthOfDay(calendar, localDay(2026, 7, 1)), hours{24});
    EXPECT_EQ(calendar.startOfDay(localDay(2026, 7, 1)), utcTime(2026, 6, 30, 22));
    EXPECT_EQ(calendar.startOfDay(localDay(2026, 1, 1)), utcTime(2025, 12, 31, 23));
}

TEST(Calendar, clockChangesContinueBeyondTheLastYearOfTheDatabase)
{
    const Calendar calendar = zone("Europe/Berlin");
    EXPECT_EQ(calendar.startOfDay(localDay(2050, 7, 1)), utcTime(2050, 6, 30, 22));
    EXPECT_EQ(calendar.startOfDay(localDay(9000, 7, 1)), utcTime(9000, 6, 30, 22));
    EXPECT_EQ(calendar.startOfDay(localDay(9000, 1, 1)), utcTime(8999, 12, 31, 23));
}

TEST(Calendar, kathmanduIsFiveHoursAnd45MinutesAhead)
{
    EXPECT_EQ(zone("Asia/Kathmandu").startOfDay(localDay(2026, 11, 21)), utcTime(2026, 11, 20, 18, 15));
}

TEST(Calendar, lordHoweChangesItsClockByHalfAnHour)
{
    const Calendar calendar = zone("Australia/Lord_Howe");
    EXPECT_EQ(lengthOfDay(calendar, localDay(2026, 4, 5)), hours{24} + minutes{30});
    EXPECT_EQ(lengthOfDay(calendar, localDay(2026, 10, 4)), hours{23} + minutes{30});
}

struct MissingMidnight {
    const char* zone;
    std::chrono::local_days day;
    Instant start; ///< of the day, 01:00 on the local clock
};

void PrintTo(const MissingMidnight& midnight, std::ostream* out)
{
    *out << midnight.zone;
}

class CalendarWithoutMidnight : public testing::TestWithParam<MissingMidnight> { };

TEST_P(CalendarWithoutMidnight, dayBeginsAtTheClockChange)
{
    const Calendar calendar = zone(GetParam().zone);
    EXPECT_EQ(calendar.startOfDay(GetParam().day), GetParam().start);
    EXPECT_EQ(calendar.dayOf(GetParam().start), GetParam().day);
    EXPECT_EQ(calendar.dayOf(GetParam().start - microseconds{1}), GetParam().day - days{1});
    EXPECT_EQ(lengthOfDay(calendar, GetParam().day), hours{23});
}

INSTANTIATE_TEST_SUITE_P(
    Zones, CalendarWithoutMidnight,
    testing::Values(MissingMidnight{"America/Santiago", localDay(2024, 9, 8), utcTime(2024, 9, 8, 4)},
                    MissingMidnight{"Africa/Cairo", localDay(2024, 4, 26), utcTime(2024, 4, 25, 22)},
                    MissingMidnight{"Asia/Beirut", localDay(2024, 3, 31), utcTime(2024, 3, 30, 22)},
                    MissingMidnight{"America/Sao_Paulo", localDay(2018, 11, 4), utcTime(2018, 11, 4, 3)}));

TEST(Calendar, dayThatApiaSkippedHasNoStart)
{
    const Calendar calendar = zone("Pacific/Apia");
    EXPECT_EQ(calendar.startOfDay(localDay(2011, 12, 29)), utcTime(2011, 12, 29, 10));
    EXPECT_EQ(calendar.startOfDay(localDay(2011, 12, 30)), std::nullopt);
    EXPECT_EQ(calendar.startOfDay(localDay(2011, 12, 31)), utcTime(2011, 12, 30, 10));
    EXPECT_EQ(calendar.dayOf(utcTime(2011, 12, 30, 10) - microseconds{1}), localDay(2011, 12, 29));
}

TEST(Calendar, dayThatKwajaleinHadTwiceBeginsOnce)
{
    // Kwajalein had 1969-09-30 twice: at its end the clock went back by 23 hours.
    const Calendar calendar = zone("Pacific/Kwajalein");
    EXPECT_EQ(calendar.startOfDay(localDay(1969, 9, 30)), utcTime(1969, 9, 29, 13));
    EXPECT_EQ(calendar.dayOf(utcTime(1969, 9, 30, 13)), localDay(1969, 9, 30));
    EXPECT_EQ(calendar.startOfDay(localDay(1969, 10, 1)), utcTime(1969, 10, 1, 12));
}

TEST(Calendar, clockThatFallsBackAcrossMidnightReturnsToTheDayBefore)
{
    // St. John's changed at 00:01 until 2011, back to 23:01.
    const Calendar calendar = zone("America/St_Johns");
    const Instant midnight = utcTime(2010, 11, 7, 2, 30);
    EXPECT_EQ(calendar.startOfDay(localDay(2010, 11, 7)), midnight);
    EXPECT_EQ(calendar.dayOf(midnight + seconds{59}), localDay(2010, 11, 7));
    EXPECT_EQ(calendar.dayOf(midnight + seconds{60}), localDay(2010, 11, 6));
    EXPECT_EQ(calendar.dayOf(midnight + seconds{60} + minutes{59}), localDay(2010, 11, 7));
}

TEST(Calendar, everyYearOfEveryInstantHasDays)
{
    for (const char* name : {"Europe/Berlin", "Pacific/Kiritimati", "Etc/GMT+12", "CET-1CEST", "America/St_Johns"}) {
        const Calendar calendar = zone(name);
        for (const Instant instant :
             {distantPast, utcTime(1, 7, 1), utcTime(1582, 10, 15), utcTime(9999, 7, 1), distantFuture}) {
            const auto day = calendar.dayOf(instant);
            const auto start = calendar.startOfDay(day);
            ASSERT_TRUE(start) << name;
            EXPECT_LE(*start, instant) << name;
            EXPECT_EQ(calendar.dayOf(*start), day) << name;
        }
    }
}

TEST(Calendar, instantsAndDaysOutOfRangeAreHarmless)
{
    const Calendar calendar = zone("Europe/Berlin");
    EXPECT_EQ(calendar.offsetAt(Instant::min()).begin, ZoneOffset::earliest);
    EXPECT_EQ(calendar.offsetAt(Instant::max()).offset, hours{1});
    EXPECT_EQ(calendar.startOfDay(std::chrono::local_days::min()), std::nullopt);
    EXPECT_EQ(calendar.startOfDay(std::chrono::local_days::max()), std::nullopt);
    EXPECT_EQ(calendar.startOfDay(localDay(-1, 12, 31)), std::nullopt);
    EXPECT_EQ(calendar.startOfDay(localDay(10001, 1, 1)), std::nullopt);
    EXPECT_TRUE(calendar.startOfDay(localDay(0, 1, 1)));
    EXPECT_TRUE(calendar.startOfDay(localDay(10000, 12, 31)));
}

TEST(CalendarNamed, zoneIsFoundByNameByColonAndByAbsolutePath)
{
    for (const char* text : {"Europe/Berlin", ":Europe/Berlin", "/usr/share/zoneinfo/Europe/Berlin",
                             ":/usr/share/zoneinfo/Europe/Berlin", "Europe/../Europe/Berlin"})
    {
        const auto calendar = Calendar::named(text);
        ASSERT_TRUE(calendar) << text;
        EXPECT_EQ(calendar->timeZoneName(), "Europe/Berlin");
        EXPECT_EQ(calendar->offsetAt(utcTime(2026, 7, 1)).offset, hours{2});
    }
}

TEST(CalendarNamed, emptyTextIsUtc)
{
    for (const char* text : {"", ":"}) {
        const auto calendar = Calendar::named(text);
        ASSERT_TRUE(calendar);
        EXPECT_EQ(calendar->timeZoneName(), "UTC");
        EXPECT_EQ(calendar->offsetAt(utcTime(2026, 7, 1)).offset, seconds{0});
    }
}

TEST(CalendarNamed, ruleIsACalendarOfItsOwn)
{
    const auto calendar = Calendar::named("CET-1CEST,M3.5.0,M10.5.0/3");
    ASSERT_TRUE(calendar);
    EXPECT_EQ(calendar->timeZoneName(), "CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(calendar->offsetAt(utcTime(2026, 7, 1)).offset, hours{2});
    EXPECT_EQ(calendar->offsetAt(utcTime(2026, 12, 1)).offset, hours{1});
}

TEST(CalendarNamed, longestTextIsOf255Bytes)
{
    EXPECT_TRUE(Calendar::named('<' + std::string(252, 'A') + ">1"));
    EXPECT_FALSE(Calendar::named('<' + std::string(253, 'A') + ">1"));
}

TEST(CalendarNamed, textWithoutAUsableZoneGivesNothing)
{
    using namespace std::string_literals;
    for (const std::string& text :
         {"Atlantis/Capital"s, "europe/berlin"s, "Europe"s, "zone.tab"s, "tzdata.zi"s, "."s, ".."s,
          "../../../etc/passwd"s, "/etc/passwd"s, "/dev/zero"s, "Europe/Berlin\0"s, "Europe/Berlin "s, "\xff\xfe"s,
          std::string(256, 'A'), std::string(100'000, '/'), "UTC0,"s})
        EXPECT_EQ(Calendar::named(text).has_value(), false) << text.substr(0, 40);
}

class CalendarDatabase : public testing::Test {
protected:
    CalendarDatabase()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "tallyfox-zones-XXXXXX").string();
        m_folder = mkdtemp(pattern.data());
        m_database = {m_folder / "zoneinfo", m_folder / "localtime", m_folder / "timezone"};
        write("zoneinfo/Region/City",
              TimeZoneBytes{.offsets = {3600}, .transitions = {}, .footer = "REG-1"}.version2());
        write("zoneinfo/Region/Town",
              TimeZoneBytes{.offsets = {7200}, .transitions = {}, .footer = "REG-2"}.version2());
    }
    ~CalendarDatabase() override
    {
        std::filesystem::remove_all(m_folder);
    }

    void write(const std::string& name, const std::string& bytes) const
    {
        std::filesystem::create_directories((m_folder / name).parent_path());
        std::ofstream{m_folder / name, std::ios::binary} << bytes;
    }
    void link(const std::string& target) const
    {
        std::filesystem::remove(m_database.localTime);
        std::filesystem::create_symlink(target, m_database.localTime);
    }
    [[nodiscard]] std::string systemZone() const
    {
        const auto calendar = Calendar::ofSystem(m_database);
        return calendar ? calendar->timeZoneName() : "none";
    }

    std::filesystem::path m_folder;
    Calendar::Database m_database;
};

TEST_F(CalendarDatabase, systemZoneIsTheOneTheLinkNames)
{
    link((m_folder / "zoneinfo/Region/City").string());
    EXPECT_EQ(systemZone(), "Region/City");
    EXPECT_EQ(Calendar::ofSystem(m_database)->offsetAt(utcTime(2026, 1, 1)).offset, hours{1});
}

TEST_F(CalendarDatabase, changedSystemZoneIsSeenAtTheNextCall)
{
    link("zoneinfo/Region/City");
    ASSERT_EQ(systemZone(), "Region/City");
    link("zoneinfo/Region/Town");
    EXPECT_EQ(systemZone(), "Region/Town");
    EXPECT_EQ(Calendar::ofSystem(m_database)->offsetAt(utcTime(2026, 1, 1)).offset, hours{2});
}

TEST_F(CalendarDatabase, systemZoneBehindSeveralLinksIsFound)
{
    std::filesystem::create_symlink("zoneinfo/Region/Town", m_folder / "second");
    link("second");
    EXPECT_EQ(systemZone(), "Region/Town");
}

TEST_F(CalendarDatabase, systemZoneIsFoundBehindAsManyLinksAsTheKernelFollows)
{
    constexpr int most = 40;
    std::filesystem::create_symlink("zoneinfo/Region/Town", m_folder / "link2");
    for (int number = 3; number <= most; ++number)
        std::filesystem::create_symlink("link" + std::to_string(number - 1),
                                        m_folder / ("link" + std::to_string(number)));
    link("link" + std::to_string(most));
    EXPECT_EQ(systemZone(), "Region/Town");
}

TEST_F(CalendarDatabase, copiedSystemZoneTakesItsNameFromTheNameFile)
{
    write("localtime", TimeZoneBytes{.offsets = {3600}, .transitions = {}, .footer = "REG-1"}.version2());
    EXPECT_EQ(systemZone(), "localtime");
    write("timezone", "Region/City\n");
    EXPECT_EQ(systemZone(), "Region/City");
    write("timezone", std::string(300, 'A') + '\n');
    EXPECT_EQ(systemZone(), "localtime");
}

TEST_F(CalendarDatabase, systemsOwnZoneIsThatOfItsOwnDatabase)
{
    const auto calendar = Calendar::ofSystem();
    const auto expected = Calendar::ofSystem(Calendar::Database{});
    ASSERT_EQ(calendar.has_value(), expected.has_value());
    EXPECT_TRUE(!calendar || calendar->timeZoneName() == expected->timeZoneName());
}

TEST_F(CalendarDatabase, systemWithoutAUsableZoneHasNone)
{
    EXPECT_EQ(systemZone(), "none");
    link("zoneinfo/Region/Nowhere");
    EXPECT_EQ(systemZone(), "none");
    link("localtime");
    EXPECT_EQ(systemZone(), "none");
    std::filesystem::remove(m_database.localTime);
    write("localtime", "no zone at all");
    EXPECT_EQ(systemZone(), "none");
}

TEST_F(CalendarDatabase, pathOfTheSystemsSettingMeansTheSystemsZone)
{
    link("zoneinfo/Region/Town");
    const auto calendar = Calendar::named(":" + m_database.localTime.string(), m_database);
    ASSERT_TRUE(calendar);
    EXPECT_EQ(calendar->timeZoneName(), "Region/Town");
}

TEST_F(CalendarDatabase, damagedZoneGivesNothing)
{
    write("zoneinfo/Region/Empty", "");
    write("zoneinfo/Region/Damaged", "TZif2 and nothing that belongs there, though long enough for a header");
    EXPECT_FALSE(Calendar::named("Region/Empty", m_database));
    EXPECT_FALSE(Calendar::named("Region/Damaged", m_database));
}

TEST_F(CalendarDatabase, zoneOutsideTheDatabaseIsRefused)
{
    std::filesystem::copy(m_folder / "zoneinfo/Region/City", m_folder / "outside");
    EXPECT_FALSE(Calendar::named("../outside", m_database));
    EXPECT_FALSE(Calendar::named((m_folder / "outside").string(), m_database));
}

TEST(DayTable, instantsOutsideTheTableHaveNoDay)
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
