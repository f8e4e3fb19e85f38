#include "TallyfoxCore/Json/Utf8.h"

#include <gtest/gtest.h>
#include <simdjson.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace tallyfox::test {
namespace {

using namespace std::string_view_literals;

/// The definition itself: every well-formed sequence and every proper beginning of one, listed.
class WellFormedSequences {
public:
    WellFormedSequences()
    {
        m_whole.reserve(0x110000);
        for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
            if (codePoint < 0xD800 || codePoint > 0xDFFF)
                add(encoded(codePoint));
        }
    }

    [[nodiscard]] std::string repaired(std::string_view bytes) const
    {
        std::string text;
        while (!bytes.empty()) {
            std::size_t length = 0;
            while (length < bytes.size() && m_beginnings.contains(key(bytes.substr(0, length + 1))))
                ++length;
            const bool isWhole = length < bytes.size() && m_whole.contains(key(bytes.substr(0, length + 1)));
            length = isWhole ? length + 1 : std::max<std::size_t>(length, 1);
            text += isWhole ? bytes.substr(0, length) : "\xEF\xBF\xBD"sv;
            bytes.remove_prefix(length);
        }
        return text;
    }

    static std::string encoded(char32_t codePoint)
    {
        const auto byte = [](char32_t value) { return std::string(1, static_cast<char>(value)); };
        const auto last = [byte, codePoint](char32_t divisor) { return byte(128 + codePoint / divisor % 64); };
        if (codePoint < 128)
            return byte(codePoint);
        if (codePoint < 2048)
            return byte(192 + codePoint / 64) + last(1);
        if (codePoint < 65536)
            return byte(224 + codePoint / 4096) + last(64) + last(1);
        return byte(240 + codePoint / 262144) + last(4096) + last(64) + last(1);
    }

private:
    static std::uint64_t key(std::string_view bytes)
    {
        std::uint64_t value = 1;
        for (const char byte : bytes)
            value = value * 256 + static_cast<unsigned char>(byte);
        return value;
    }
    void add(std::string_view sequence)
    {
        m_whole.insert(key(sequence));
        for (std::size_t length = 1; length < sequence.size(); ++length)
            m_beginnings.insert(key(sequence.substr(0, length)));
    }

    std::unordered_set<std::uint64_t> m_whole;
    std::unordered_set<std::uint64_t> m_beginnings;
};

const WellFormedSequences& oracle()
{
    static const WellFormedSequences sequences;
    return sequences;
}

void expectSameAsOracle(const std::string& bytes)
{
    const std::string expected = oracle().repaired(bytes);
    ASSERT_EQ(repairedUtf8(bytes), expected) << testing::PrintToString(bytes);
    ASSERT_EQ(isValidUtf8(bytes), expected == bytes) << testing::PrintToString(bytes);
    ASSERT_EQ(isValidUtf8(bytes), simdjson::validate_utf8(bytes)) << testing::PrintToString(bytes);
}

TEST(Utf8, maximalSubpartsAreReplacedOneByOne)
{
    const std::vector<std::pair<std::string_view, std::string_view>> table{
        {"", ""},
        {"plain", "plain"},
        {"\0"sv, "\0"sv},
        {"\x80", "\uFFFD"},
        {"\xBF\xBF", "\uFFFD\uFFFD"},
        {"\xC0\xAF", "\uFFFD\uFFFD"},
        {"\xC1\xBF", "\uFFFD\uFFFD"},
        {"\xC3", "\uFFFD"},
        {"\xC3\x28", "\uFFFD("},
        {"\xE0\x80\xAF", "\uFFFD\uFFFD\uFFFD"},
        {"\xE0\x9F\xBF", "\uFFFD\uFFFD\uFFFD"},
        {"\xE0\xA0", "\uFFFD"},
        {"\xE2\x82", "\uFFFD"},
        {"\xE2\x82\xE2\x82\xAC", "\uFFFD\u20AC"},
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
        {"\xED\xA0\xBD\xED\xB8\x80", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xF0\x90\x80", "\uFFFD"},
        {"\xF0\x8F\xBF\xBF", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xF4\x8F\xBF\xBF", "\U0010FFFF"},
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xF5\x80\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xF8\x88\x80\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xFE\xFF", "\uFFFD\uFFFD"},
        {"\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64", "a\uFFFD\uFFFD\uFFFDb\uFFFDc\uFFFD\uFFFDd"},
        {"\xEF\xBB\xBF", "\uFEFF"},
        {"\xEF\xBF\xBF", "\uFFFF"},
        {"\xF0\x9F\x98\x80\xF0\x9F\x98", "\U0001F600\uFFFD"}};
    for (const auto& [bytes, expected] : table) {
        EXPECT_EQ(repairedUtf8(bytes), expected) << testing::PrintToString(bytes);
        EXPECT_EQ(isValidUtf8(bytes), bytes == expected) << testing::PrintToString(bytes);
    }
}

TEST(Utf8, everyCodePointIsWellFormedAndKept)
{
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        if (codePoint >= 0xD800 && codePoint <= 0xDFFF)
            continue;
        std::string text;
        appendUtf8(text, codePoint);
        ASSERT_EQ(text, WellFormedSequences::encoded(codePoint)) << static_cast<unsigned>(codePoint);
        ASSERT_TRUE(isValidUtf8(text)) << static_cast<unsigned>(codePoint);
        ASSERT_EQ(repairedUtf8(text), text) << static_cast<unsigned>(codePoint);
    }
}

TEST(Utf8, everyPairOfBytesIsJudgedByTheDefinition)
{
    for (unsigned value = 0; value < 0x10000; ++value)
        expectSameAsOracle({static_cast<char>(value >> 8), static_cast<char>(value & 0xFF)});
}

TEST(Utf8, boundaryBytesInEveryCombinationAreJudgedByTheDefinition)
{
    const std::string_view bytes = "a\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xDF\xE0\xE1\xED\xEF\xF0\xF3\xF4\xF5"sv;
    for (const char first : bytes) {
        for (const char second : bytes) {
            for (const char third : bytes) {
                expectSameAsOracle({first, second, third});
                for (const char fourth : bytes)
                    expectSameAsOracle({first, second, third, fourth});
            }
        }
    }
}

TEST(Utf8, illFormedByteIsFoundAtEveryPositionOfALongText)
{
    for (std::size_t size = 1; size < 150; ++size) {
        for (std::size_t position = 0; position < size; ++position) {
            std::string bytes(size, 'x');
            bytes[position] = '\xF0';
            expectSameAsOracle(bytes);
        }
    }
}

TEST(Utf8, randomBytesAreJudgedByTheDefinition)
{
    std::mt19937 random(41);
    const std::vector<std::string_view> parts{"ascii text of some length",
                                              "\xC3\xA9"sv,
                                              "\xE2\x82\xAC"sv,
                                              "\xF0\x9F\x98\x80"sv,
                                              "\xED\xA0\x80"sv,
                                              "\xF0\x9F"sv,
                                              "\x80"sv,
                                              "\xE2\x82"sv,
                                              "\xC0"sv,
                                              "a"sv};
    for (int round = 0; round < 20'000; ++round) {
        std::string bytes;
        for (unsigned count = random() % 8; count > 0; --count)
            bytes += parts[random() % parts.size()];
        expectSameAsOracle(bytes);
    }
}

} // namespace
} // namespace tallyfox::test
