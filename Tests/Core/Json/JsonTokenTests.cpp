#include "TallyfoxCore/Json/JsonReader.h"
#include "TallyfoxCore/Json/JsonToken.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tallyfox::test {
namespace {

using namespace std::string_view_literals;

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr std::size_t manyDigits = 1024 * 1024;

/// The token of a text that is one number, taken by the reader so that it is grammatical.
JsonNumber number(std::string_view text)
{
    JsonReader reader(text);
    JsonNumber token;
    EXPECT_TRUE(reader.readNumber(token) && reader.finish()) << text.substr(0, 100);
    return token;
}

/// The token of a string with this raw content.
JsonString string(std::string_view quoted)
{
    JsonReader reader(quoted);
    JsonString token;
    EXPECT_TRUE(reader.readString(token) && reader.finish()) << quoted;
    return token;
}

TEST(JsonNumber, integralValueInAnySpellingIsAnInteger)
{
    const std::vector<std::pair<std::string_view, std::int64_t>> table{{"0", 0},
                                                                       {"-0", 0},
                                                                       {"0.0", 0},
                                                                       {"-0.000", 0},
                                                                       {"0e5", 0},
                                                                       {"0e-5", 0},
                                                                       {"-0.0e999999999999", 0},
                                                                       {"0e99999999999999999999999999999999999999", 0},
                                                                       {"0.000e-99999999999999999999999999", 0},
                                                                       {"5", 5},
                                                                       {"-5", -5},
                                                                       {"5.0", 5},
                                                                       {"5.000000000000000000000000000000", 5},
                                                                       {"50e-1", 5},
                                                                       {"0.5e1", 5},
                                                                       {"0.05E+2", 5},
                                                                       {"500.00e-2", 5},
                                                                       {"5e0", 5},
                                                                       {"5E-0", 5},
                                                                       {"5e+00000000000000000000000000000000000000", 5},
                                                                       {"0.00000000000000000005e20", 5},
                                                                       {"500000000000000000000e-20", 5},
                                                                       {"1e3", 1000},
                                                                       {"-1E+3", -1000},
                                                                       {"1.5e1", 15},
                                                                       {"10.010e3", 10010},
                                                                       {"-12.3456789e7", -123456789},
                                                                       {"100", 100},
                                                                       {"1e18", 1000000000000000000},
                                                                       {"9.223372036854775807e18", largest},
                                                                       {"9223372036854775807", largest},
                                                                       {"9223372036854775807.0", largest},
                                                                       {"9223372036854775807.000e0", largest},
                                                                       {"9223372036854775807e-0", largest},
                                                                       {"92233720368547758070e-1", largest},
                                                                       {"922337203685477580.7e1", largest},
                                                                       {"0.0009223372036854775807e22", largest},
                                                                       {"-9223372036854775808", smallest},
                                                                       {"-9223372036854775808.0", smallest},
                                                                       {"-9.223372036854775808E18", smallest},
                                                                       {"-92233720368547758080000e-4", smallest},
                                                                       {"-922337203685477580800.00e-2", smallest},
                                                                       {"-9223372036854775807", smallest + 1},
                                                                       {"9223372036854775806.0", largest - 1}};
    for (const auto& [text, value] : table)
        EXPECT_EQ(number(text).toInteger(), value) << text;
}

TEST(JsonNumber, fractionalOrTooLargeValueIsNotAnInteger)
{
    for (const std::string_view text : {"0.1",
                                        "-0.1",
                                        "5.5",
                                        "5e-1",
                                        "1e-1",
                                        "0.0000000000000000001",
                                        "1.00000000000000000000000000000000000001",
                                        "9223372036854775806.5",
                                        "9223372036854775807.1",
                                        "-9223372036854775808.1",
                                        "9223372036854775808",
                                        "9223372036854775808.0",
                                        "9223372036854775808e-0",
                                        "-9223372036854775809",
                                        "-9223372036854775809e0",
                                        "9.223372036854775808e18",
                                        "92233720368547758080e-1",
                                        "9999999999999999999",
                                        "1e19",
                                        "-1e19",
                                        "10e18",
                                        "18446744073709551615",
                                        "18446744073709551616",
                                        "18446744073709551621",
                                        "1e20",
                                        "1e400",
                                        "-1e400",
                                        "1e99999999999999999999",
                                        "1e-99999999999999999999",
                                        "1e9223372036854775807",
                                        "1e9223372036854775808",
                                        "1e-9223372036854775808",
                                        "1e18446744073709551616",
                                        "1e4294967296",
                                        "1e1152921504606846976",
                                        "123456789012345678901234567890"})
        EXPECT_EQ(number(text).toInteger(), std::nullopt) << text;
}

TEST(JsonNumber, exponentOfAnyLengthNeitherWrapsNorFits)
{
    for (std::size_t digits = 3; digits < 60; ++digits) {
        for (const char digit : {'1', '5', '9'}) {
            const std::string exponent(digits, digit);
            EXPECT_EQ(number("1e" + exponent).toInteger(), std::nullopt) << exponent;
            EXPECT_EQ(number("1e-" + exponent).toInteger(), std::nullopt) << exponent;
            EXPECT_EQ(number("0e" + exponent).toInteger(), 0) << exponent;
            EXPECT_EQ(number("0e-" + exponent).toInteger(), 0) << exponent;
        }
    }
}

TEST(JsonNumber, mebibyteOfDigitsKeepsItsValue)
{
    const std::string zeros(manyDigits, '0');
    const std::string nines(manyDigits, '9');
    EXPECT_EQ(number(nines).toInteger(), std::nullopt);
    EXPECT_EQ(number("0." + nines).toInteger(), std::nullopt);
    EXPECT_EQ(number("1" + zeros).toInteger(), std::nullopt);
    EXPECT_EQ(number("1" + zeros + "e-1048576").toInteger(), 1);
    EXPECT_EQ(number("12" + zeros + "e-1048577").toInteger(), std::nullopt);
    EXPECT_EQ(number("-7." + zeros).toInteger(), -7);
    EXPECT_EQ(number("7." + zeros + "1").toInteger(), std::nullopt);
    EXPECT_EQ(number("0." + zeros + "42e1048578").toInteger(), 42);
    EXPECT_EQ(number("3e" + zeros + "2").toInteger(), 300);
    EXPECT_EQ(number("1e" + nines).toInteger(), std::nullopt);
    EXPECT_EQ(number("0e" + nines).toInteger(), 0);
}

__extension__ using Wide = __int128;

/// The decimal digits of a value that may be a little beyond 64 bits.
std::string decimalDigits(Wide value)
{
    std::string digits;
    const bool isNegative = value < 0;
    do {
        const auto digit = static_cast<int>(value % 10);
        digits.insert(digits.begin(), static_cast<char>('0' + std::abs(digit)));
        value /= 10;
    } while (value != 0);
    return isNegative ? "-" + digits : digits;
}

/// The same number with its decimal point `shift` places further left or right, compensated by an exponent.
std::string respelled(const std::string& digits, int shift)
{
    const bool isNegative = digits.front() == '-';
    std::string text = isNegative ? digits.substr(1) : digits;
    if (shift < 0 && digits == "0")
        return "0e" + std::to_string(shift);
    if (shift < 0)
        return digits + std::string(static_cast<std::size_t>(-shift), '0') + "e" + std::to_string(shift);
    const auto places = static_cast<std::size_t>(shift);
    if (text.size() <= places)
        text.insert(0, places - text.size() + 1, '0');
    text.insert(text.size() - places, ".");
    if (shift == 0)
        text += "0";
    return (isNegative ? "-" : "") + text + "E+" + std::to_string(shift);
}

TEST(JsonNumber, everySpellingOfAnIntegerAroundTheBoundsGivesTheSame)
{
    for (const Wide base : {Wide{0}, Wide{largest}, Wide{smallest}, Wide{1000000000000000000}}) {
        for (Wide value = base - 25; value <= base + 25; ++value) {
            const bool fits = value >= smallest && value <= largest;
            const auto expected = fits ? std::optional(static_cast<std::int64_t>(value)) : std::nullopt;
            const std::string digits = decimalDigits(value);
            ASSERT_EQ(number(digits).toInteger(), expected) << digits;
            for (int shift = -25; shift <= 25; ++shift)
                ASSERT_EQ(number(respelled(digits, shift)).toInteger(), expected) << respelled(digits, shift);
        }
    }
}

TEST(JsonNumber, doubleIsTheNearestOne)
{
    const std::vector<std::pair<std::string_view, double>> table{
        {"0", 0.0},
        {"42", 42.0},
        {"42.5", 42.5},
        {"-1.5e3", -1500.0},
        {"0.1", 0.1},
        {"1e308", 1e308},
        {"1.7976931348623157e308", 1.7976931348623157e308},
        {"1.7976931348623158e308", 1.7976931348623157e308},
        {"2.2250738585072014e-308", 2.2250738585072014e-308},
        {"2.2250738585072011e-308", 2.2250738585072011e-308},
        {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min()},
        {"5e-324", std::numeric_limits<double>::denorm_min()},
        {"1e-320", 1e-320},
        {"9007199254740993", 9007199254740992.0},
        {"9007199254740993.00000000000000000000001", 9007199254740994.0},
        {"100000000000000000000000000000e-29", 1.0},
        {"18446744073709551616", 18446744073709551616.0}};
    for (const auto& [text, value] : table)
        EXPECT_EQ(number(text).toDouble(), value) << text;
}

TEST(JsonNumber, tooSmallForADoubleBecomesZeroOfItsSign)
{
    for (const std::string_view text :
         {"1e-400", "2e-324", "0.1e-9999", "1e-99999999999999999999999", "0e-400", "0e400", "0.0e99999999999999999999"})
    {
        const std::optional<double> value = number(text).toDouble();
        ASSERT_TRUE(value) << text;
        EXPECT_EQ(*value, 0.0) << text;
        EXPECT_FALSE(std::signbit(*value)) << text;
        const std::optional<double> negated = number("-" + std::string(text)).toDouble();
        ASSERT_TRUE(negated) << text;
        EXPECT_EQ(*negated, 0.0) << text;
        EXPECT_TRUE(std::signbit(*negated)) << text;
    }
}

TEST(JsonNumber, tooLargeForADoubleIsNone)
{
    for (const std::string_view text :
         {"1e309", "1.8e308", "1.7976931348623159e308", "-1e400", "1e99999999999999999999999", "0.001e9999",
          "1000000000000000000e9223372036854775807"})
        EXPECT_EQ(number(text).toDouble(), std::nullopt) << text;
    EXPECT_EQ(number(std::string(400, '9')).toDouble(), std::nullopt);
    EXPECT_EQ(number(std::string(manyDigits, '9') + ".5e-3").toDouble(), std::nullopt);
}

TEST(JsonNumber, mebibyteOfDigitsRoundsAsOneNumber)
{
    const std::string zeros(manyDigits, '0');
    EXPECT_EQ(number("1." + zeros + "1").toDouble(), 1.0);
    EXPECT_EQ(number("1" + zeros + "e-1048576").toDouble(), 1.0);
    EXPECT_EQ(number("0." + zeros + "25e1048576").toDouble(), 0.25);
    EXPECT_EQ(number("0." + zeros + "25").toDouble(), 0.0);
}

TEST(JsonNumber, doublesAgreeWithTheCLibrary)
{
    std::mt19937_64 random(20250304);
    char text[64] = {};
    for (int round = 0; round < 20'000; ++round) {
        const auto value = std::bit_cast<double>(random());
        if (!std::isfinite(value))
            continue;
        const int digits = static_cast<int>(random() % 20);
        ASSERT_GT(std::snprintf(text, sizeof text, "%.*e", digits, value), 0);
        const double expected = std::strtod(text, nullptr);
        const auto wanted = std::isinf(expected) ? std::nullopt : std::optional(expected);
        ASSERT_EQ(number(text).toDouble(), wanted) << text;
    }
}

TEST(JsonString, escapesAreDecoded)
{
    const std::vector<std::pair<std::string_view, std::string_view>> table{
        {R"("")", ""},
        {R"("plain")", "plain"},
        {R"("\"\\\/\b\f\n\r\t")", "\"\\/\b\f\n\r\t"},
        {R"("\\n")", "\\n"},
        {R"("\\u0041")", "\\u0041"},
        {R"("\\\u0041")", "\\A"},
        {R"("\u0041\u007f")", "A\x7F"},
        {R"("\u0000")", "\0"sv},
        {R"("a\u0000b")", "a\0b"sv},
        {R"("\u0080")", "\xC2\x80"},
        {R"("\u07FF")", "\xDF\xBF"},
        {R"("\u0800")", "\xE0\xA0\x80"},
        {R"("\u00e9\u00E9")", "\xC3\xA9\xC3\xA9"},
        {R"("\u20ac")", "\xE2\x82\xAC"},
        {R"("\uffff")", "\xEF\xBF\xBF"},
        {R"("\uFEFF")", "\xEF\xBB\xBF"},
        {R"("\ud7ff\ue000")", "\xED\x9F\xBF\xEE\x80\x80"},
        {R"("\ud800\udc00")", "\xF0\x90\x80\x80"},
        {R"("\uD83D\uDE00!")", "\xF0\x9F\x98\x80!"},
        {R"("\udbff\udfff")", "\xF4\x8F\xBF\xBF"},
        {"\"\xC3\xA9\\n\xE2\x82\xAC\"", "\xC3\xA9\n\xE2\x82\xAC"}};
    for (const auto& [quoted, expected] : table)
        EXPECT_EQ(string(quoted).decoded(), expected) << quoted;
}

TEST(JsonString, loneSurrogateEscapesAreReplaced)
{
    const std::vector<std::pair<std::string_view, std::string_view>> table{
        {R"("\ud800")", "\uFFFD"},
        {R"("\udbff")", "\uFFFD"},
        {R"("\udc00")", "\uFFFD"},
        {R"("\udfff")", "\uFFFD"},
        {R"("a\ud83d")", "a\uFFFD"},
        {R"("\ud83da")", "\uFFFDa"},
        {R"("\ud83d\u0041")", "\uFFFDA"},
        {R"("\ud83d\n")", "\uFFFD\n"},
        {R"("\ud83d\\ude00")", "\uFFFD\\ude00"},
        {R"("\ude00\ud83d")", "\uFFFD\uFFFD"},
        {R"("\ud83d\ud83d\ude00")", "\uFFFD\U0001F600"},
        {R"("\ud83d\ude00\ude00")", "\U0001F600\uFFFD"},
        {R"("\ud83d\ud83d")", "\uFFFD\uFFFD"},
        {R"("\ud83d\ud7ff")", "\uFFFD\uD7FF"},
        {R"("\ud83d\ue000")", "\uFFFD\uE000"}};
    for (const auto& [quoted, expected] : table)
        EXPECT_EQ(string(quoted).decoded(), expected) << quoted;
}

TEST(JsonString, illFormedBytesAreReplaced)
{
    const std::vector<std::pair<std::string_view, std::string_view>> table{
        {"\"\x80\"", "\uFFFD"},
        {"\"a\xFF\"", "a\uFFFD"},
        {"\"\xC3\"", "\uFFFD"},
        {"\"\xE2\x82\"", "\uFFFD"},
        {"\"\xED\xA0\x80\"", "\uFFFD\uFFFD\uFFFD"},
        {"\"\xE2\x82\\n\"", "\uFFFD\n"},
        {"\"\xE2\\u0082\xAC\"", "\uFFFD\xC2\x82\uFFFD"},
        {"\"\\u00e9\xA9\"", "\u00E9\uFFFD"},
        {"\"\\ud83d\xED\xB8\x80\"", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\"\xC3\\\"\"", "\uFFFD\""}};
    for (const auto& [quoted, expected] : table)
        EXPECT_EQ(string(quoted).decoded(), expected) << testing::PrintToString(quoted);
}

TEST(JsonString, decodingIntoStorageGivesTheSame)
{
    std::string storage = "from before";
    for (const std::string_view quoted :
         {R"("")"sv, R"("plain")"sv, R"("\n")"sv, R"("\ud800")"sv, "\"\xC3\xA9\""sv, "\"\xFF\""sv, "\"\xFF\\t\""sv})
    {
        const JsonString token = string(quoted);
        EXPECT_EQ(token.decoded(storage), token.decoded()) << testing::PrintToString(quoted);
    }
    const JsonString plain = string(R"("plain")");
    EXPECT_EQ(plain.decoded(storage).data(), plain.raw.data());
}

TEST(JsonString, everySpellingOfAWordEqualsIt)
{
    for (const std::string_view quoted : {R"("id")"sv, R"("\u0069d")"sv, R"("i\u0064")"sv, R"("\u0069\u0064")"sv})
        EXPECT_TRUE(string(quoted).equals("id")) << quoted;
    EXPECT_TRUE(string(R"("assistant")").equals("assistant"));
    EXPECT_TRUE(string(R"("\u0061ssistant")").equals("assistant"));
    EXPECT_TRUE(string(R"("input\u005Ftokens")").equals("input_tokens"));
    EXPECT_TRUE(string(R"("input\u005ftoken\u0073")").equals("input_tokens"));
    EXPECT_TRUE(string(R"("\/\"\\\n")").equals("/\"\\\n"));
    EXPECT_TRUE(string(R"("")").equals(""));
}

TEST(JsonString, nothingElseEqualsAWord)
{
    for (const std::string_view quoted : {R"("")"sv,
                                          R"("i")"sv,
                                          R"("d")"sv,
                                          R"("ID")"sv,
                                          R"("Id")"sv,
                                          R"("idd")"sv,
                                          R"("id ")"sv,
                                          R"(" id")"sv,
                                          R"("id\u0000")"sv,
                                          R"("\u0000id")"sv,
                                          R"("\u0069")"sv,
                                          R"("\u0049d")"sv,
                                          R"("\u0069d\u0064")"sv,
                                          R"("\\u0069d")"sv,
                                          R"("i\\d")"sv,
                                          R"("\ud800\u0069d")"sv,
                                          R"("id\ud800")"sv,
                                          R"("\u0169d")"sv,
                                          R"("\u0269\u0264")"sv,
                                          "\"i\\u0064\xFF\""sv,
                                          "\"\xFFid\""sv,
                                          "\"\xEF\xBB\xBFid\""sv,
                                          R"("i\n")"sv})
        EXPECT_FALSE(string(quoted).equals("id")) << testing::PrintToString(quoted);
    EXPECT_FALSE(string(R"("\u0041")").equals(""));
    EXPECT_FALSE(string(R"("a")").equals(""));
    EXPECT_FALSE(string("\"\xE9\"").equals("i"));
}

} // namespace
} // namespace tallyfox::test
