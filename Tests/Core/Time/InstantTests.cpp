#include "Support/Moments.h"
#include "TallyfoxCore/Time/Instant.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tallyfox::test {
namespace {

using std::chrono::microseconds;

Instant at(int year, unsigned month, unsigned day, int hour, int minute, int second, int fraction = 0)
{
    return utcTime(year, month, day, hour, minute, second) + microseconds{fraction};
}

TEST(Iso8601, bothFormsAreRead)
{
    const std::vector<std::pair<std::string_view, Instant>> table{
        {"2025-03-04T05:06:07Z", at(2025, 3, 4, 5, 6, 7)},
        {"2025-03-04T05:06:07.123Z", at(2025, 3, 4, 5, 6, 7, 123'000)},
        {"2025-03-04T05:06:07.5Z", at(2025, 3, 4, 5, 6, 7, 500'000)},
        {"2025-03-04T05:06:07.000Z", at(2025, 3, 4, 5, 6, 7)},
        {"1970-01-01T00:00:00Z", Instant{}},
        {"1969-12-31T23:59:59.999999Z", Instant{microseconds{-1}}},
        {"2038-01-19T03:14:08Z", at(2038, 1, 19, 3, 14, 8)}};
    for (const auto& [text, instant] : table)
        EXPECT_EQ(parseISO8601(text), instant) << text;
}

TEST(Iso8601, everyZoneDesignatorIsRead)
{
    const std::vector<std::pair<std::string_view, Instant>> table{
        {"Z", at(2025, 3, 4, 12, 0, 0)},       {"+00:00", at(2025, 3, 4, 12, 0, 0)},
        {"-00:00", at(2025, 3, 4, 12, 0, 0)},  {"+0000", at(2025, 3, 4, 12, 0, 0)},
        {"-0000", at(2025, 3, 4, 12, 0, 0)},   {"+01:00", at(2025, 3, 4, 11, 0, 0)},
        {"-01:00", at(2025, 3, 4, 13, 0, 0)},  {"+0100", at(2025, 3, 4, 11, 0, 0)},
        {"-0100", at(2025, 3, 4, 13, 0, 0)},   {"+05:45", at(2025, 3, 4, 6, 15, 0)},
        {"-03:30", at(2025, 3, 4, 15, 30, 0)}, {"+14:00", at(2025, 3, 3, 22, 0, 0)},
        {"-12:00", at(2025, 3, 5, 0, 0, 0)},   {"+23:59", at(2025, 3, 3, 12, 1, 0)},
        {"-2359", at(2025, 3, 5, 11, 59, 0)},  {"+00:01", at(2025, 3, 4, 11, 59, 0)}};
    for (const auto& [designator, instant] : table) {
        EXPECT_EQ(parseISO8601("2025-03-04T12:00:00" + std::string(designator)), instant) << designator;
        EXPECT_EQ(parseISO8601("2025-03-04T12:00:00.25" + std::string(designator)), instant + microseconds{250'000})
            << designator;
    }
}

TEST(Iso8601, missingDesignatorMeansUtcOnlyAfterAFraction)
{
    EXPECT_EQ(parseISO8601("2025-03-04T05:06:07.123"), at(2025, 3, 4, 5, 6, 7, 123'000));
    EXPECT_EQ(parseISO8601("2025-03-04T05:06:07"), std::nullopt);
}

TEST(Iso8601, otherDesignatorsAreRefused)
{
    for (const char* designator : {"z",
                                   "+",
                                   "-",
                                   "+1",
                                   "+01",
                                   "-01",
                                   "+1:00",
                                   "+01:0",
                                   "+010",
                                   "+01:000",
                                   "+01000",
                                   "+01:00:00",
                                   "+24:00",
                                   "-24:00",
                                   "+01:60",
                                   "+0160",
                                   "+99:99",
                                   "01:00",
                                   "+01-00",
                                   "+01::00",
                                   "++01:00",
                                   "+-1:00",
                                   "Z+00:00",
                                   "ZZ",
                                   " Z",
                                   "Z ",
                                   "GMT",
                                   "UTC",
                                   "+ 1:00",
                                   "+0a:00",
                                   "+01 00",
                                   "\xE2\x88\x92"
                                   "01:00",
                                   "[UTC]",
                                   "Z[UTC]"})
    {
        EXPECT_EQ(parseISO8601(std::string("2025-03-04T05:06:07") + designator), std::nullopt) << designator;
        EXPECT_EQ(parseISO8601(std::string("2025-03-04T05:06:07.5") + designator), std::nullopt) << designator;
    }
}

TEST(Iso8601, fractionOfAnyLengthCountsToTheMicrosecond)
{
    const std::string digits = "1234569999999999999999999999999999999999";
    ASSERT_EQ(digits.size(), 40U);
    const int values[] = {100'000, 120'000, 123'000, 123'400, 123'450, 123'456};
    for (std::size_t count = 1; count <= digits.size(); ++count) {
        const int expected = values[std::min<std::size_t>(count, 6) - 1];
        for (const char* designator : {"Z", "", "+00:00"}) {
            const std::string text = "2025-03-04T05:06:07." + digits.substr(0, count) + designator;
            EXPECT_EQ(parseISO8601(text), at(2025, 3, 4, 5, 6, 7, expected)) << text;
        }
    }
    EXPECT_EQ(parseISO8601("2025-12-31T23:59:59." + std::string(40, '9') + "Z"), at(2025, 12, 31, 23, 59, 59, 999'999));
    EXPECT_EQ(parseISO8601("2025-03-04T05:06:07.0000001Z"), at(2025, 3, 4, 5, 6, 7));
    EXPECT_EQ(parseISO8601("2025-03-04T05:06:07.000001Z"), at(2025, 3, 4, 5, 6, 7, 1));
}

TEST(Iso8601, otherFractionsAreRefused)
{
    for (const char* end : {".Z", ".", ".+01:00", ",5Z", ",5", "..5Z", ".5.5Z", ". 5Z", ".-5Z", ".5e1Z", ".aZ", ".5a"})
        EXPECT_EQ(parseISO8601(std::string("2025-03-04T05:06:07") + end), std::nullopt) << end;
}

TEST(Iso8601, onlyDatesThatExistAreRead)
{
    for (const char* date : {"2024-02-29", "2000-02-29", "2400-02-29", "2023-02-28", "2025-01-31", "2025-04-30",
                             "2025-12-31", "0001-01-01", "0004-02-29", "9999-12-31", "1582-10-10"})
        EXPECT_TRUE(parseISO8601(date + std::string("T00:00:00Z"))) << date;
    for (const char* date : {"2023-02-29", "1900-02-29", "2100-02-29", "2024-02-30", "2024-02-31", "2025-04-31",
                             "2025-06-31", "2025-09-31", "2025-11-31", "2025-01-32", "2025-00-10", "2025-13-01",
                             "2025-01-00", "2025-99-99", "0000-01-01", "0000-12-31"})
        EXPECT_EQ(parseISO8601(date + std::string("T00:00:00Z")), std::nullopt) << date;
}

TEST(Iso8601, onlyTimesThatExistAreRead)
{
    for (const char* time : {"00:00:00", "23:59:59", "23:00:00", "00:59:00", "00:00:59"})
        EXPECT_TRUE(parseISO8601("2025-03-04T" + std::string(time) + "Z")) << time;
    for (const char* time : {"24:00:00", "23:60:00", "23:59:60", "25:00:00", "99:00:00", "00:99:00", "00:00:61"}) {
        EXPECT_EQ(parseISO8601("2025-03-04T" + std::string(time) + "Z"), std::nullopt) << time;
        EXPECT_EQ(parseISO8601("2025-03-04T" + std::string(time) + ".0Z"), std::nullopt) << time;
    }
    EXPECT_EQ(parseISO8601("2016-12-31T23:59:60Z"), std::nullopt) << "leap seconds are not counted";
}

TEST(Iso8601, otherShapesAreRefused)
{
    using namespace std::string_view_literals;
    for (const std::string_view text : {""sv,
                                        "T"sv,
                                        "Z"sv,
                                        "2025"sv,
                                        "2025-03"sv,
                                        "2025-03-04"sv,
                                        "2025-03-04Z"sv,
                                        "2025-03-04T"sv,
                                        "2025-03-04TZ"sv,
                                        "2025-03-04 05:06:07Z"sv,
                                        "2025-03-04 05:06:07"sv,
                                        "2025-03-04t05:06:07Z"sv,
                                        "2025-03-04T05:06:07z"sv,
                                        "2025-03-0405:06:07Z"sv,
                                        "20250304T050607Z"sv,
                                        "2025-03-04T050607Z"sv,
                                        "20250304T05:06:07Z"sv,
                                        "2025-03-04T05:06Z"sv,
                                        "2025-03-04T05Z"sv,
                                        "2025-03-04T05:06.5Z"sv,
                                        "2025/03/04T05:06:07Z"sv,
                                        "2025-3-4T05:06:07Z"sv,
                                        "2025-03-04T5:6:7Z"sv,
                                        "25-03-04T05:06:07Z"sv,
                                        "02025-03-04T05:06:07Z"sv,
                                        "12025-03-04T05:06:07Z"sv,
                                        "+2025-03-04T05:06:07Z"sv,
                                        "-2025-03-04T05:06:07Z"sv,
                                        "2025-W10-2T05:06:07Z"sv,
                                        "2025-063T05:06:07Z"sv,
                                        " 2025-03-04T05:06:07Z"sv,
                                        "2025-03-04T05:06:07Z "sv,
                                        "2025-03-04T05:06:07Z\n"sv,
                                        "\0"sv,
                                        "2025-03-04T05:06:07Z\0"sv,
                                        "2025-03-04T05:06:07.5\0"sv,
                                        "2025-03-04T05:06:07.1\0Z"sv,
                                        "2025-03-04T05:06:0\0Z"sv,
                                        "\xEF\xBB\xBF"
                                        "2025-03-04T05:06:07Z"sv,
                                        "2025-03-04T05:06:07ZZ"sv,
                                        "1741064767"sv,
                                        "Tue, 04 Mar 2025 05:06:07 GMT"sv,
                                        "2025-03-04T05:06:07.123456789012345678901x"sv,
                                        "2025-03-04T05:06:-7Z"sv,
                                        "2025-03-04T+5:06:07Z"sv,
                                        "\xD9\xA2\xD9\xA0\xD9\xA2\xD9\xA5-03-04T05:06:07Z"sv})
        EXPECT_EQ(parseISO8601(text), std::nullopt) << testing::PrintToString(text);
}

TEST(Iso8601, truncatedStampIsRefusedOrAnotherWholeOne)
{
    const std::string_view whole = "2025-03-04T05:06:07.123456+05:30";
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const bool endsInFraction = size > 20 && size <= 26;
        EXPECT_EQ(parseISO8601(whole.substr(0, size)).has_value(), endsInFraction) << whole.substr(0, size);
    }
}

TEST(Iso8601, boundsAreTheYearsOneTo9999InUtc)
{
    EXPECT_EQ(parseISO8601("0001-01-01T00:00:00Z"), distantPast);
    EXPECT_EQ(parseISO8601("0001-01-01T00:00:00.000000"), distantPast);
    EXPECT_EQ(parseISO8601("0001-01-01T01:00:00+01:00"), distantPast);
    EXPECT_EQ(parseISO8601("0001-01-01T00:00:00-00:01"), distantPast + std::chrono::minutes{1});
    EXPECT_EQ(parseISO8601("9999-12-31T23:59:59.999999Z"), distantFuture);
    EXPECT_EQ(parseISO8601("9999-12-31T23:59:59.9999999999Z"), distantFuture);
    EXPECT_EQ(parseISO8601("9999-12-31T22:59:59.999999-01:00"), distantFuture);
    EXPECT_EQ(parseISO8601("9999-12-31T23:59:59Z"), distantFuture - microseconds{999'999});
}

TEST(Iso8601, instantBeyondTheBoundsIsRefused)
{
    for (const char* text : {"0001-01-01T00:00:00+00:01", "0001-01-01T00:59:59.999999+01:00",
                             "0001-01-01T23:58:59+23:59", "9999-12-31T23:59:59-00:01", "9999-12-31T23:00:00.5-01:00",
                             "9999-12-31T00:01:00-23:59", "0000-12-31T23:59:59-23:59", "0000-12-31T23:59:59.9Z"})
        EXPECT_EQ(parseISO8601(text), std::nullopt) << text;
}

} // namespace
} // namespace tallyfox::test
