#include "Support/GuardedText.h"
#include "TallyfoxCore/Json/WordSearch.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tallyfox::test {
namespace {

constexpr std::string_view usage = "usage";
constexpr std::string_view lastTokenUsage = "last_token_usage";

std::string jsonString(std::string_view word)
{
    return '"' + std::string(word) + '"';
}

/// Whether `text` begins with an escape for a lower-case letter or an underscore.
bool beginsWithEscape(std::string_view text)
{
    if (text.size() < 6 || !text.starts_with("\\u00"))
        return false;
    const unsigned long code = std::strtoul(std::string(text.substr(4, 2)).c_str(), nullptr, 16);
    return code == '_' || (code >= 'a' && code <= 'z');
}

/// The search, character by character.
std::size_t findNaively(std::string_view text, std::size_t from, std::string_view word)
{
    for (std::size_t position = from; position < text.size(); ++position) {
        const std::string_view rest = text.substr(position);
        if (rest.starts_with(jsonString(word)) || beginsWithEscape(rest))
            return position;
    }
    return text.npos;
}

/// 0 to 40, and everything within 20 of the sizes that vectors and blocks may have.
std::vector<std::size_t> criticalSizes()
{
    std::vector<std::size_t> sizes;
    for (std::size_t size = 0; size <= 40; ++size)
        sizes.push_back(size);
    for (const std::size_t block : {64U, 128U, 256U, 512U, 1024U}) {
        for (std::size_t size = block - 20; size <= block + 20; ++size)
            sizes.push_back(size);
    }
    return sizes;
}

/// Looks for `needle` after and before every critical number of bytes, at the very end of readable memory.
void findEverywhere(std::string_view word, std::string_view needle, char filler)
{
    GuardedText room(4096);
    for (const std::size_t before : criticalSizes()) {
        for (const std::size_t after : criticalSizes()) {
            const std::string text = std::string(before, filler) + std::string(needle) + std::string(after, filler);
            ASSERT_EQ(findJsonWord(room.atEnd(text), 0, word), before) << needle << ", " << after << " bytes after it";
        }
    }
}

TEST(WordSearch, plainWordIsFoundAtEveryPlace)
{
    findEverywhere(usage, jsonString(usage), 'x');
    findEverywhere(lastTokenUsage, jsonString(lastTokenUsage), '"');
}

TEST(WordSearch, escapedWordIsFoundAtEveryPlace)
{
    findEverywhere(usage, "\\u0075sage", 'x');
    findEverywhere(lastTokenUsage, "\\u005Ftoken", '\\');
}

TEST(WordSearch, shortestAndLongestWordsAreFoundAtEveryPlace)
{
    findEverywhere("a", jsonString("a"), 'b');
    const std::string longest(63, 'z');
    findEverywhere(longest, jsonString(longest), 'z');
}

TEST(WordSearch, everyEscapeOfALetterOrUnderscoreIsFound)
{
    for (const char* digits : {"%02x", "%02X"}) {
        for (const char letter : std::string_view("abcdefghijklmnopqrstuvwxyz_")) {
            std::array<char, 8> hex{};
            std::snprintf(hex.data(), hex.size(), digits, static_cast<unsigned>(letter));
            const std::string text = std::string(300, ' ') + "\"\\u00" + hex.data() + '"';
            EXPECT_EQ(findJsonWord(text, 0, usage), 301U) << text.substr(300);
        }
    }
}

TEST(WordSearch, wordCutAtTheEndIsNotFound)
{
    GuardedText room(4096);
    for (const std::string& needle : {jsonString(usage), jsonString(lastTokenUsage), std::string("\\u007")}) {
        for (const std::size_t before : criticalSizes()) {
            for (std::size_t size = 0; size < needle.size(); ++size) {
                const std::string text = std::string(before, 'x') + needle.substr(0, size);
                const std::string_view word = needle == jsonString(usage) ? usage : lastTokenUsage;
                ASSERT_EQ(findJsonWord(room.atEnd(text), 0, word), text.npos) << text;
            }
        }
    }
}

TEST(WordSearch, nearMissesAreNotFound)
{
    for (const char* text : {"usage", "\"usage", "usage\"", "\"usages\"", "\"Usage\"", "\"usag\"", "\"xusage\"",
                             "\"usagf\"", "\\u001b[1m", "\\u00e9", "\\u2028", "\\ud83d\\ude00", "\\n\\t\\\""})
    {
        const std::string padded = std::string(290, ' ') + text + std::string(290, ' ');
        EXPECT_EQ(findJsonWord(text, 0, usage), padded.npos) << text;
        EXPECT_EQ(findJsonWord(padded, 0, usage), padded.npos) << text;
    }
}

TEST(WordSearch, firstOfSeveralCountsAndTheSearchCanGoOn)
{
    const std::string gap(333, 'x');
    const std::string text = gap + jsonString(usage) + gap + "\\u0061" + gap + jsonString(usage) + gap;
    std::vector<std::size_t> places;
    for (std::size_t from = findJsonWord(text, 0, usage); from != text.npos; from = findJsonWord(text, from + 1, usage))
        places.push_back(from);
    EXPECT_EQ(places, (std::vector<std::size_t>{333, 673, 1012}));
}

TEST(WordSearch, searchFromTheEndFindsNothing)
{
    const std::string text = jsonString(usage);
    EXPECT_EQ(findJsonWord(text, text.size(), usage), text.npos);
    EXPECT_EQ(findJsonWord({}, 0, usage), text.npos);
}

/// Texts full of beginnings of finds.
std::string temptingText(std::mt19937_64& random)
{
    constexpr std::array<std::string_view, 12> pieces{"\"",      "\"u",     "\"usage", "\"usage\"",
                                                      "usage\"", "\\",      "\\u",     "\\u00",
                                                      "\\u0061", "\\u007A", "x",       "xxxxxxxxxxxxx"};
    std::string text;
    const std::size_t size = random() % 900;
    const std::size_t variety = 1 + random() % pieces.size();
    while (text.size() < size)
        text += pieces[(random() % variety + 10) % pieces.size()];
    return text;
}

TEST(WordSearch, findsWhatASearchByCharacterFindsFromEveryPlace)
{
    std::mt19937_64 random{20'261'121};
    GuardedText room(4096);
    std::size_t finds = 0;
    for (int round = 0; round < 4'000; ++round) {
        const std::string copy = temptingText(random);
        const std::string_view text = room.atEnd(copy);
        const std::size_t from = random() % (text.size() + 1);
        const std::size_t expected = findNaively(text, from, usage);
        ASSERT_EQ(findJsonWord(text, from, usage), expected) << "from " << from << " in " << copy;
        finds += expected != text.npos ? 1 : 0;
    }
    EXPECT_GT(finds, 1'000U);
    EXPECT_LT(finds, 3'900U);
}

} // namespace
} // namespace tallyfox::test
