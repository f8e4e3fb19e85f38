#include "TallyfoxCore/Time/Instant.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <optional>
#include <random>
#include <regex.h>
#include <string>

namespace tallyfox::test {
namespace {

using std::chrono::microseconds;
using std::chrono::seconds;

/// The seconds since 1970 of a calendar time, by the C library; nothing if the time does not exist.
std::optional<std::time_t> unixSeconds(std::tm time)
{
    const std::tm asked = time;
    const std::time_t value = timegm(&time);
    std::tm back{};
    gmtime_r(&value, &back);
    const bool isSame = back.tm_year == asked.tm_year && back.tm_mon == asked.tm_mon && back.tm_mday == asked.tm_mday
        && back.tm_hour == asked.tm_hour && back.tm_min == asked.tm_min && back.tm_sec == asked.tm_sec;
    return isSame ? std::optional(value) : std::nullopt;
}

/// The parts of a timestamp, found by a regular expression of the C library.
class Parts {
public:
    explicit Parts(const std::string& text)
        : m_text(text)
    {
        m_isMatch = text.find('\0') == text.npos && regexec(form(), text.c_str(), count, m_parts, 0) == 0;
    }
    [[nodiscard]] bool isMatch() const
    {
        return m_isMatch;
    }
    [[nodiscard]] bool has(std::size_t index) const
    {
        return m_parts[index].rm_so >= 0;
    }
    [[nodiscard]] std::string text(std::size_t index) const
    {
        const auto begin = static_cast<std::size_t>(m_parts[index].rm_so);
        return has(index) ? m_text.substr(begin, static_cast<std::size_t>(m_parts[index].rm_eo) - begin) : "";
    }
    [[nodiscard]] int number(std::size_t index) const
    {
        return std::stoi(text(index));
    }

private:
    /// Compiled once, because compiling takes far longer than matching.
    static const regex_t* form()
    {
        struct Form {
            Form()
            {
                EXPECT_EQ(regcomp(&compiled,
                                  "^([0-9]{4})-([0-9]{2})-([0-9]{2})T([0-9]{2}):([0-9]{2}):([0-9]{2})"
                                  "([.][0-9]+)?(Z|([+-])([0-9]{2}):?([0-9]{2}))?$",
                                  REG_EXTENDED),
                          0);
            }
            ~Form()
            {
                regfree(&compiled);
            }
            Form(const Form&) = delete;
            Form& operator=(const Form&) = delete;
            regex_t compiled{};
        };
        static const Form once;
        return &once.compiled;
    }

    static constexpr std::size_t count = 12;
    std::string m_text;
    regmatch_t m_parts[count] = {};
    bool m_isMatch = false;
};

/// The same parser, built from functions of the C library.
std::optional<Instant> parsedByTheCLibrary(const std::string& text)
{
    const Parts parts(text);
    if (!parts.isMatch())
        return std::nullopt;
    const auto number = [&parts](std::size_t index) { return parts.number(index); };
    if (!parts.has(8) && !parts.has(7))
        return std::nullopt;
    std::tm time{};
    time.tm_year = number(1) - 1900;
    time.tm_mon = number(2) - 1;
    time.tm_mday = number(3);
    time.tm_hour = number(4);
    time.tm_min = number(5);
    time.tm_sec = number(6);
    std::optional<std::time_t> value = unixSeconds(time);
    if (!value)
        return std::nullopt;
    if (parts.has(9)) {
        if (number(10) > 23 || number(11) > 59)
            return std::nullopt;
        const int offset = number(10) * 3600 + number(11) * 60;
        *value -= parts.text(9) == "-" ? -offset : offset;
    }
    std::tm utc{};
    gmtime_r(&*value, &utc);
    if (number(1) == 0 || utc.tm_year + 1900 < 1 || utc.tm_year + 1900 > 9999)
        return std::nullopt;
    const int fraction = std::stoi((parts.text(7) + "0000000").substr(parts.has(7) ? 1 : 0, 6));
    return Instant{seconds{*value} + microseconds{fraction}};
}

void expectSameAsTheCLibrary(const std::string& text)
{
    ASSERT_EQ(parseISO8601(text), parsedByTheCLibrary(text)) << testing::PrintToString(text);
}

const char* const stamps[] = {"2024-02-29T23:59:58.123456+05:30", "2025-03-04T05:06:07Z", "1999-12-31T00:00:00.9",
                              "0001-01-01T00:30:00-0030", "9999-12-31T23:29:59.5+0000"};

TEST(Iso8601Oracle, stampsThatAreMutatedAreLegalThemselves)
{
    for (const char* stamp : stamps) {
        EXPECT_TRUE(parsedByTheCLibrary(stamp)) << stamp;
        expectSameAsTheCLibrary(stamp);
    }
}

TEST(Iso8601Oracle, everyChangedByteIsRefusedOrReadRight)
{
    for (const std::string stamp : stamps) {
        for (std::size_t position = 0; position < stamp.size(); ++position) {
            for (int value = 0; value < 0x100; ++value) {
                std::string changed = stamp;
                changed[position] = static_cast<char>(value);
                expectSameAsTheCLibrary(changed);
            }
        }
    }
}

TEST(Iso8601Oracle, everyMissingDoubledOrInsertedByteIsRefusedOrReadRight)
{
    for (const std::string stamp : stamps) {
        for (std::size_t position = 0; position <= stamp.size(); ++position) {
            for (const char character : std::string("0159-+:.TZz ,\0", 14))
                expectSameAsTheCLibrary(std::string(stamp).insert(position, 1, character));
            if (position < stamp.size())
                expectSameAsTheCLibrary(std::string(stamp).erase(position, 1));
        }
    }
}

/// A timestamp of the instant, in a zone `offset` east of UTC that is written as `designator`.
std::string stamp(std::time_t local, const std::string& fraction, const std::string& designator)
{
    std::tm time{};
    gmtime_r(&local, &time);
    char text[80] = {};
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", time.tm_year + 1900, time.tm_mon + 1,
                  time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec);
    return text + fraction + designator;
}

TEST(Iso8601Oracle, randomStampsNameTheInstantTheCLibraryNames)
{
    constexpr std::int64_t day = 86'400;
    const std::int64_t first = std::chrono::floor<seconds>(distantPast).time_since_epoch().count() + day;
    const std::int64_t last = std::chrono::floor<seconds>(distantFuture).time_since_epoch().count() - day;
    std::mt19937_64 random(1001);
    char text[16] = {};
    for (int round = 0; round < 100'000; ++round) {
        const std::time_t utc = std::uniform_int_distribution<std::int64_t>(first, last)(random);
        const int offset = static_cast<int>(random() % (24 * 60));
        const int sign = random() % 2 == 0 ? 1 : -1;
        const auto fraction = static_cast<int>(random() % 1'000'000);
        std::snprintf(text, sizeof text, random() % 2 == 0 ? "%c%02d:%02d" : "%c%02d%02d", sign > 0 ? '+' : '-',
                      offset / 60, offset % 60);
        const std::string designator = text;
        std::snprintf(text, sizeof text, ".%06d", fraction);
        const std::string written = stamp(utc + sign * offset * 60, text, designator);
        ASSERT_EQ(parseISO8601(written), Instant{seconds{utc} + microseconds{fraction}}) << written;
        ASSERT_EQ(parseISO8601(stamp(utc, "", "Z")), Instant{seconds{utc}}) << utc;
        ASSERT_EQ(parseISO8601(stamp(utc, text, "")), Instant{seconds{utc} + microseconds{fraction}}) << utc;
    }
}

TEST(Iso8601Oracle, everyDayOfTheRangeIsReadAndNoOther)
{
    char text[32] = {};
    for (int year : {1, 4, 100, 400, 1582, 1600, 1752, 1900, 1999, 2000, 2023, 2024, 2025, 2100, 9999}) {
        for (int month = 0; month <= 13; ++month) {
            for (int date = 0; date <= 32; ++date) {
                std::snprintf(text, sizeof text, "%04d-%02d-%02dT12:00:00Z", year, month, date);
                expectSameAsTheCLibrary(text);
            }
        }
    }
}

} // namespace
} // namespace tallyfox::test
