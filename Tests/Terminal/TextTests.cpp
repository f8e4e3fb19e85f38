#include "Support/Moments.h"
#include "Tallyfox/Engine/CommandLine/TextStyle.h"
#include "Tallyfox/Engine/CommandLine/TokenText.h"
#include "Tallyfox/Terminal/DateText.h"

#include <QLocale>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tallyfox::test {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::seconds;

TEST(TokenText, countsAreShortenedFromAThousandOn)
{
    EXPECT_EQ(tokenText(0), "0");
    EXPECT_EQ(tokenText(999), "999");
    EXPECT_EQ(tokenText(1000), "1.0K");
    EXPECT_EQ(tokenText(1049), "1.0K");
    EXPECT_EQ(tokenText(999'999), "1000.0K");
    EXPECT_EQ(tokenText(1'000'000), "1.0M");
    EXPECT_EQ(tokenText(1'250'001), "1.3M");
    EXPECT_EQ(tokenText(std::numeric_limits<std::int64_t>::max()), "9223372036854.8M");
    EXPECT_EQ(tokenText(-5'000'000), "-5,000,000");
}

TEST(TokenText, tiesAreRoundedUpAndNothingElseIs)
{
    EXPECT_EQ(tokenText(1'250'000), "1.3M");
    EXPECT_EQ(tokenText(1'249'999), "1.2M");
    EXPECT_EQ(tokenText(1'750'000), "1.8M");
    EXPECT_EQ(tokenText(1'450'000), "1.4M"); // the double nearest to 1.45 is below it
    EXPECT_EQ(tokenText(1'250), "1.3K");
    EXPECT_EQ(tokenText(1'249), "1.2K");
}

TEST(TokenText, viewsWriteExactCountsAsTheLocaleDoes)
{
    const QLocale english{QLocale::English, QLocale::UnitedStates};
    const QLocale german{QLocale::German, QLocale::Germany};
    EXPECT_EQ(tokenText(0, english), QStringLiteral("0"));
    EXPECT_EQ(tokenText(999, german), QStringLiteral("999"));
    EXPECT_EQ(tokenText(1000, german), QStringLiteral("1.0K"));
    EXPECT_EQ(tokenText(999'999, english), QStringLiteral("1000.0K"));
    EXPECT_EQ(tokenText(1'000'000, german), QStringLiteral("1.0M"));
    EXPECT_EQ(tokenText(-5'000'000, english), QStringLiteral("-5,000,000"));
    EXPECT_EQ(tokenText(-5'000'000, german), QStringLiteral("-5.000.000"));
}

TEST(TokenText, exactCountsAreGrouped)
{
    EXPECT_EQ(exactTokenText(0), "0");
    EXPECT_EQ(exactTokenText(999), "999");
    EXPECT_EQ(exactTokenText(1000), "1,000");
    EXPECT_EQ(exactTokenText(123'456), "123,456");
    EXPECT_EQ(exactTokenText(1'234'567), "1,234,567");
    EXPECT_EQ(exactTokenText(-999), "-999");
    EXPECT_EQ(exactTokenText(-123'456), "-123,456");
    EXPECT_EQ(exactTokenText(std::numeric_limits<std::int64_t>::min()), "-9,223,372,036,854,775,808");
}

TEST(DateText, isoInstantsHaveMilliseconds)
{
    EXPECT_EQ(DateText::isoInstant(utcTime(2026, 11, 21, 9, 41, 7) + microseconds{123'999}),
              "2026-11-21T09:41:07.123Z");
    EXPECT_EQ(DateText::isoInstant(utcTime(1970, 1, 1) - microseconds{1}), "1969-12-31T23:59:59.999Z");
    EXPECT_EQ(DateText::isoInstant(distantPast), "0001-01-01T00:00:00.000Z");
    EXPECT_EQ(DateText::isoInstant(distantFuture), "9999-12-31T23:59:59.999Z");
}

TEST(DateText, isoDaysHaveFourDigitYears)
{
    EXPECT_EQ(DateText::isoDay(localDay(2026, 1, 2)), "2026-01-02");
    EXPECT_EQ(DateText::isoDay(localDay(1, 1, 1)), "0001-01-01");
}

TEST(DateText, momentsAreOnTheLocalClock)
{
    const Calendar kathmandu = zone("Asia/Kathmandu");
    const Instant now = utcTime(2026, 11, 21, 9);
    EXPECT_EQ(DateText::localDayAndTime(now, kathmandu), "21 Nov 2026, 14:45");
    EXPECT_EQ(DateText::localMoment(now + hours{9}, now, kathmandu), "23:45");
    EXPECT_EQ(DateText::localMoment(now + hours{10}, now, kathmandu), "22 Nov, 00:45");
    EXPECT_EQ(DateText::localMoment(now + days{60}, now, kathmandu), "20 Jan 2027, 14:45");
    EXPECT_EQ(DateText::localMoment(utcTime(1969, 12, 31, 23), now, Calendar::utc()), "31 Dec 1969, 23:00");
}

TEST(DateText, distancesAreToldByTheirTwoLargestUnits)
{
    const Instant now = utcTime(2026, 11, 21);
    const auto in = [&](auto distance) { return DateText::relative(now + distance, now); };
    EXPECT_EQ(in(hours{2} + minutes{5} + seconds{59}), "in 2 h 5 min");
    EXPECT_EQ(in(hours{2}), "in 2 h");
    EXPECT_EQ(in(minutes{59}), "in 59 min");
    EXPECT_EQ(in(seconds{59}), "in less than 1 min");
    EXPECT_EQ(in(seconds{0}), "in less than 1 min");
    EXPECT_EQ(in(days{3} + hours{4} + minutes{59}), "in 3 d 4 h");
    EXPECT_EQ(in(days{7}), "in 7 d");
    EXPECT_EQ(in(-seconds{59}), "just now");
    EXPECT_EQ(in(-minutes{5}), "5 min ago");
    EXPECT_EQ(in(-hours{25}), "1 d 1 h ago");
    EXPECT_EQ(DateText::relative(distantFuture, distantPast), "in 3652058 d 23 h");
}

TEST(TextStyle, toneNeedsColour)
{
    EXPECT_EQ((TextStyle{.hasColour = false}).paint(Tone::bad, "x"), "x");
    EXPECT_EQ((TextStyle{.hasColour = true}).paint(Tone::bad, "x"), "\x1b[31mx\x1b[0m");
    EXPECT_EQ((TextStyle{.hasColour = true}).paint(Tone::plain, "x"), "x");
    EXPECT_EQ((TextStyle{.hasColour = true}).paint(Tone::good, ""), "");
}

TEST(TextStyle, paddingCountsCharactersAndNotBytes)
{
    EXPECT_EQ(countColumns("—█ü"), 3U);
    EXPECT_EQ(padLeft("—", 3), "  —");
    EXPECT_EQ(padRight("ü", 3), "ü  ");
    EXPECT_EQ(padRight("long", 2), "long");
}

TEST(TextStyle, controlCharactersAreReplaced)
{
    const std::string mark = "\xEF\xBF\xBD";
    EXPECT_EQ(replaceControls("plain — ü 日"), "plain — ü 日");
    EXPECT_EQ(replaceControls("a\x1b[31m\n\t\x7f"), "a" + mark + "[31m" + mark + mark + mark);
    EXPECT_EQ(replaceControls("\xC2\x9B"
                              "31m"),
              mark + "31m")
        << "a control sequence of one character";
    EXPECT_EQ(replaceControls("\xC2\xA0\xC2"), "\xC2\xA0" + mark);
    EXPECT_EQ(replaceControls(std::string_view{"\0", 1}), mark);
}

} // namespace
} // namespace tallyfox::test
