#include "Support/GlibcTimeZone.h"
#include "Support/Moments.h"
#include "TallyfoxCore/Time/TimeZoneRule.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tallyfox::test {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_seconds;

sys_seconds momentOf(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0)
{
    return floor<seconds>(utcTime(year, month, day, hour, minute, second));
}

seconds offset(std::string_view rule, sys_seconds time)
{
    return TimeZoneRule::parse(rule).value().offsetAt(time).offset;
}

TEST(TimeZoneRule, fixedOffsetNeverEnds)
{
    EXPECT_EQ(TimeZoneRule::parse("UTC0")->offsetAt(momentOf(2026, 1, 1)), ZoneOffset::always(seconds{0}));
    EXPECT_EQ(offset("<+0545>-5:45", momentOf(2026, 1, 1)), hours{5} + minutes{45});
    EXPECT_EQ(offset("ABC+3:04:05", momentOf(2026, 1, 1)), -(hours{3} + minutes{4} + seconds{5}));
    EXPECT_EQ(offset("LMT24", momentOf(2026, 1, 1)), -hours{24});
    EXPECT_EQ(offset("AZaz-1", momentOf(2026, 1, 1)), hours{1});
}

TEST(TimeZoneRule, northernSummerBeginsAndEndsAtItsSecond)
{
    const auto rule = TimeZoneRule::parse("CET-1CEST,M3.5.0,M10.5.0/3").value();
    const ZoneOffset summer{momentOf(2026, 3, 29, 1), momentOf(2026, 10, 25, 1), hours{2}};
    const ZoneOffset winter{momentOf(2026, 10, 25, 1), momentOf(2027, 3, 28, 1), hours{1}};
    EXPECT_EQ(rule.offsetAt(summer.begin - seconds{1}).offset, hours{1});
    EXPECT_EQ(rule.offsetAt(summer.begin), summer);
    EXPECT_EQ(rule.offsetAt(summer.end - seconds{1}), summer);
    EXPECT_EQ(rule.offsetAt(summer.end), winter);
    EXPECT_EQ(rule.offsetAt(momentOf(2026, 12, 31, 23, 59, 59)), winter);
    EXPECT_EQ(rule.offsetAt(momentOf(2027, 1, 1)), winter);
}

TEST(TimeZoneRule, southernSummerLastsOverNewYear)
{
    const auto rule = TimeZoneRule::parse("NZST-12NZDT,M9.5.0,M4.1.0/3").value();
    const ZoneOffset summer{momentOf(2026, 9, 26, 14), momentOf(2027, 4, 3, 14), hours{13}};
    EXPECT_EQ(rule.offsetAt(momentOf(2026, 12, 31, 23, 59, 59)), summer);
    EXPECT_EQ(rule.offsetAt(momentOf(2027, 1, 1)), summer);
    EXPECT_EQ(rule.offsetAt(summer.end).offset, hours{12});
}

TEST(TimeZoneRule, changesMayBeInTheFirstAndTheLastMonth)
{
    const auto rule = TimeZoneRule::parse("ABC0DEF,M1.1.4,M12.5.6");
    ASSERT_TRUE(rule);
    EXPECT_EQ(rule->offsetAt(momentOf(2026, 7, 1)),
              (ZoneOffset{momentOf(2026, 1, 1, 2), momentOf(2026, 12, 26, 1), hours{1}}));
}

TEST(TimeZoneRule, timesOutsideTheirDayAreValid)
{
    // Nuuk changes on the Saturday evening before, Jerusalem on the Friday after the fourth Thursday.
    EXPECT_EQ(TimeZoneRule::parse("<-02>2<-01>,M3.5.0/-1,M10.5.0/0")->offsetAt(momentOf(2026, 7, 1)).begin,
              momentOf(2026, 3, 29, 1));
    EXPECT_EQ(TimeZoneRule::parse("IST-2IDT,M3.4.4/26,M10.5.0")->offsetAt(momentOf(2026, 7, 1)).begin,
              momentOf(2026, 3, 27));
}

TEST(TimeZoneRule, changesNearNewYearAreFoundFromBothYears)
{
    // In a zone ahead of Greenwich the local new year begins while Greenwich still has the old one.
    const auto rule = TimeZoneRule::parse("AHD-12SUM,J1/0,J100/0").value();
    EXPECT_EQ(rule.offsetAt(momentOf(2025, 12, 31, 11, 59, 59)).offset, hours{12});
    EXPECT_EQ(rule.offsetAt(momentOf(2025, 12, 31, 12)).offset, hours{13});
    EXPECT_EQ(rule.offsetAt(momentOf(2026, 1, 1)).begin, momentOf(2025, 12, 31, 12));

    const auto late = TimeZoneRule::parse("LAT0SUM,J365/167,J100").value();
    EXPECT_EQ(late.offsetAt(momentOf(2026, 1, 6, 22)).offset, hours{0});
    EXPECT_EQ(late.offsetAt(momentOf(2026, 1, 6, 23)).offset, hours{1});
}

TEST(TimeZoneRule, changesThatAllFallIntoTheYearBesideTheirOwnAreFound)
{
    // Both changes of a year are in the last days of the year before.
    const auto early = TimeZoneRule::parse("EAR0SUM,J1/-100,J3/-100").value();
    EXPECT_EQ(early.offsetAt(momentOf(2026, 12, 30)),
              (ZoneOffset{momentOf(2026, 12, 29, 19), momentOf(2027, 12, 27, 20), seconds{0}}));
    // Both changes of a year are in the first days of the year after.
    const auto late = TimeZoneRule::parse("LAT0SUM,J363/100,J365/100").value();
    EXPECT_EQ(late.offsetAt(momentOf(2026, 1, 1)),
              (ZoneOffset{momentOf(2025, 1, 4, 3), momentOf(2026, 1, 2, 4), seconds{0}}));
}

TEST(TimeZoneRule, summerAllTheYearNeverEnds)
{
    for (const char* text : {"XXX3EDT4,0/0,J365/23", "EST5EDT,0/0,J365/25"}) {
        const auto rule = TimeZoneRule::parse(text).value();
        EXPECT_EQ(rule.offsetAt(momentOf(2026, 7, 1)).offset, -hours{4}) << text;
        for (sys_seconds time = momentOf(2025, 12, 31); time < momentOf(2026, 1, 2); time += minutes{30})
            EXPECT_EQ(rule.offsetAt(time).offset, -hours{4}) << text;
    }
}

TEST(TimeZoneRule, dayNumbersCountTheLeapDayOrNot)
{
    const auto begin = [](const char* rule, int year) {
        return TimeZoneRule::parse(rule)->offsetAt(momentOf(year, 4, 1)).begin;
    };
    EXPECT_EQ(begin("STD0SUM,J60/0,J300", 2027), momentOf(2027, 3, 1));
    EXPECT_EQ(begin("STD0SUM,J60/0,J300", 2028), momentOf(2028, 3, 1));
    EXPECT_EQ(begin("STD0SUM,J59/0,J300", 2028), momentOf(2028, 2, 28));
    EXPECT_EQ(begin("STD0SUM,59/0,J300", 2027), momentOf(2027, 3, 1));
    EXPECT_EQ(begin("STD0SUM,59/0,J300", 2028), momentOf(2028, 2, 29));
}

TEST(TimeZoneRule, missingChangesAreThoseOfTheUnitedStates)
{
    const auto summer = TimeZoneRule::parse("EST5EDT")->offsetAt(momentOf(2026, 7, 1));
    EXPECT_EQ(summer, (ZoneOffset{momentOf(2026, 3, 8, 7), momentOf(2026, 11, 1, 6), -hours{4}}));
}

class TimeZoneRuleRefusal : public testing::TestWithParam<std::string_view> { };

TEST_P(TimeZoneRuleRefusal, incompleteRuleGivesNothing)
{
    EXPECT_FALSE(TimeZoneRule::parse(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Texts, TimeZoneRuleRefusal,
                         testing::Values("", "A", "AB1", "ABC", "ABC+", "ABC-", "ABC25", "ABC1:", "ABC1:60",
                                         "ABC1:00:60", "ABC1:00:00:00", "<AB1", "<AB>1", "<ABC1", "<A C>1", "ABC 1",
                                         "AB@1", "AB[1", "AB`1", "AB{1", "ABC1 ", "ABC1\n", "ABC1DE", "ABC1DEF,",
                                         "ABC1DEF,M3.2.0", "ABC1DEF,M3.2.0,", "ABC1DEF,M0.2.0,M11.1.0",
                                         "ABC1DEF,M13.2.0,M11.1.0", "ABC1DEF,M3.0.0,M11.1.0", "ABC1DEF,M3.6.0,M11.1.0",
                                         "ABC1DEF,M3.2.7,M11.1.0", "ABC1DEF,M3.2,M11.1.0", "ABC1DEF,J0,J365",
                                         "ABC1DEF,J1,J366", "ABC1DEF,0,366", "ABC1DEF,M3.2.0/168,M11.1.0",
                                         "ABC1DEF,M3.2.0/-168,M11.1.0", "ABC1DEF,M3.2.0/,M11.1.0",
                                         "ABC1DEF,M3.2.0,M11.1.0,", "ABC1DEF,M3.2.0,M11.1.0/2x",
                                         "ABC99999999999999999999", "ABC1DEF,J99999999999999999999,J1",
                                         "\xc3\x84\xc3\x96\xc3\x9c"
                                         "1"));

/// A rule with changes between March and November, where it does not matter that the C library's years end in UTC.
std::string randomRule(std::mt19937& random)
{
    const auto number = [&random](int least, int most) { return std::uniform_int_distribution{least, most}(random); };
    const auto change = [&](int firstMonth, int lastMonth) {
        const std::string time =
            number(0, 1) == 0 ? "" : "/" + std::to_string(number(0, 24)) + ":" + std::to_string(number(10, 59));
        switch (number(0, 2)) {
        case 0:
            return "J" + std::to_string(number(firstMonth * 30, lastMonth * 30)) + time;
        case 1:
            return std::to_string(number(firstMonth * 30, lastMonth * 30)) + time;
        default:
            return "M" + std::to_string(number(firstMonth, lastMonth)) + "." + std::to_string(number(1, 5)) + "."
                + std::to_string(number(0, 6)) + time;
        }
    };
    const std::string zone = "<+A1>" + std::to_string(number(-13, 12)) + ":" + std::to_string(number(10, 59)) + "SUM";
    const std::string first = change(3, 5);
    const std::string second = change(7, 11);
    return zone + "," + (number(0, 1) == 0 ? first + "," + second : second + "," + first);
}

TEST(TimeZoneRule, daysAgreeWithTheCLibraryForRandomRules)
{
    constexpr unsigned seed = 20'261'121;
    std::mt19937 random{seed};
    for (int round = 0; round < 200; ++round) {
        const std::string text = randomRule(random);
        const Calendar calendar = zone(text);
        const GlibcTimeZone glibc{text};
        std::uniform_int_distribution<std::int64_t> moments{momentOf(2020, 1, 1).time_since_epoch().count(),
                                                            momentOf(2031, 1, 1).time_since_epoch().count()};
        for (int sample = 0; sample < 500; ++sample) {
            const sys_seconds time{seconds{moments(random)}};
            ASSERT_EQ(calendar.dayOf(time), glibc.dayOf(time)) << text << " at " << time.time_since_epoch().count();
        }
    }
}

} // namespace
} // namespace tallyfox::test
