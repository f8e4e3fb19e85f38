#include "Support/GuardedText.h"
#include "Support/HistoryRecords.h"
#include "TallyfoxCore/Usage/HistoryLines.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace tallyfox::test {
namespace {

using Lines = std::vector<std::string_view>;

Lines linesOfText(std::string_view text)
{
    return linesOf(HistoryLines(text));
}

Lines linesBehindFirst(std::string_view text)
{
    return linesOf(HistoryLines(text).withoutFirst());
}

/// The lines by definition: the text as characters, of which CR LF is one, split at each line feed, without empty
/// pieces.
std::vector<std::string> splitByCharacters(std::string_view text)
{
    std::vector<std::string> pieces(1);
    while (!text.empty()) {
        const std::string character(text.substr(0, text.starts_with("\r\n") ? 2 : 1));
        text.remove_prefix(character.size());
        if (character == "\n")
            pieces.emplace_back();
        else
            pieces.back() += character;
    }
    std::erase(pieces, "");
    return pieces;
}

std::vector<std::string> copies(const Lines& lines)
{
    return {lines.begin(), lines.end()};
}

/// Calls `visit` with every text of at most `length` of the pieces.
template <std::size_t count, typename Visit>
void forEachText(const std::array<std::string_view, count>& pieces, std::size_t length, const std::string& begin,
                 Visit visit)
{
    visit(begin);
    if (length == 0)
        return;
    for (const std::string_view piece : pieces)
        forEachText(pieces, length - 1, begin + std::string(piece), visit);
}

TEST(HistoryLines, lineFeedsSeparateAndEmptyLinesDoNotCount)
{
    EXPECT_EQ(linesOfText(""), Lines{});
    EXPECT_EQ(linesOfText("\n\n\n"), Lines{});
    EXPECT_EQ(linesOfText("one\ntwo\n"), (Lines{"one", "two"}));
    EXPECT_EQ(linesOfText("\n\none\n\n\ntwo\n\n"), (Lines{"one", "two"}));
}

TEST(HistoryLines, lineFeedAfterTheLastLineIsOptional)
{
    EXPECT_EQ(linesOfText("one"), Lines{"one"});
    EXPECT_EQ(linesOfText("one\ntwo"), (Lines{"one", "two"}));
}

TEST(HistoryLines, carriageReturnBeforeLineFeedKeepsTheLineTogether)
{
    EXPECT_EQ(linesOfText("one\r\ntwo"), Lines{"one\r\ntwo"});
    EXPECT_EQ(linesOfText("one\r\n\ntwo"), (Lines{"one\r\n", "two"}));
    EXPECT_EQ(linesOfText("one\n\r\ntwo"), (Lines{"one", "\r\ntwo"}));
    EXPECT_EQ(linesOfText("one\r\r\ntwo"), Lines{"one\r\r\ntwo"});
    EXPECT_EQ(linesOfText("\r\n"), Lines{"\r\n"});
}

TEST(HistoryLines, loneCarriageReturnIsPartOfItsLine)
{
    EXPECT_EQ(linesOfText("one\rtwo\nthree\r"), (Lines{"one\rtwo", "three\r"}));
}

TEST(HistoryLines, lineMayHoldAnyByte)
{
    const std::string text{"\0\xFF\n\xC3\n\xE2\x80\xA8\x85\x0B\x0C", 11};
    const std::vector<std::string> expected{{"\0\xFF", 2}, "\xC3", "\xE2\x80\xA8\x85\x0B\x0C"};
    EXPECT_EQ(copies(linesOfText(text)), expected);
}

TEST(HistoryLines, withoutFirstDropsACompleteLine)
{
    EXPECT_EQ(linesBehindFirst("complete\ntwo\nthree"), (Lines{"two", "three"}));
}

TEST(HistoryLines, withoutFirstSkipsLeadingLineFeeds)
{
    EXPECT_EQ(linesBehindFirst("\none\ntwo"), Lines{"two"});
    EXPECT_EQ(linesBehindFirst("\n\n\none\n\ntwo"), Lines{"two"});
}

TEST(HistoryLines, withoutFirstDropsTheRestOfAMultiByteCharacterWithItsLine)
{
    EXPECT_EQ(linesBehindFirst("\x98\x80 one\ntwo"), Lines{"two"});
    EXPECT_EQ(linesBehindFirst("\x80\ntwo"), Lines{"two"});
}

TEST(HistoryLines, cutBetweenCarriageReturnAndLineFeedLeavesALineFeed)
{
    EXPECT_EQ(linesBehindFirst("\none\r\nmore\ntwo"), Lines{"two"});
}

TEST(HistoryLines, withoutFirstOfOneLineOrNoneIsEmpty)
{
    for (const char* text : {"", "\n", "\n\n", "one", "one\n", "\none\n", "one\r\nmore"})
        EXPECT_EQ(linesBehindFirst(text), Lines{}) << testing::PrintToString(text);
}

TEST(HistoryLines, everyShortTextSplitsAsItsCharactersDo)
{
    constexpr std::array<std::string_view, 3> pieces{"a", "\r", "\n"};
    GuardedText room(16);
    forEachText(pieces, 8, "", [&room](const std::string& text) {
        const std::vector<std::string> expected = splitByCharacters(text);
        ASSERT_EQ(copies(linesOfText(room.atEnd(text))), expected) << testing::PrintToString(text);
        ASSERT_EQ(copies(linesOfText(room.atBegin(text))), expected) << testing::PrintToString(text);
        std::vector<std::string> rest = expected;
        if (!rest.empty())
            rest.erase(rest.begin());
        ASSERT_EQ(copies(linesBehindFirst(room.atEnd(text))), rest) << testing::PrintToString(text);
    });
}

TEST(HistoryLines, mentioningLinesAreThoseWithTheWordInAnySpelling)
{
    constexpr std::array<std::string_view, 6> pieces{R"("usage")", R"("us\u0061ge")", "usage", "\n", "\r\n", "\r"};
    GuardedText room(64);
    std::size_t found = 0;
    forEachText(pieces, 5, "", [&](const std::string& text) {
        const HistoryLines lines(room.atEnd(text));
        std::vector<std::string> expected;
        for (const std::string& line : splitByCharacters(text)) {
            if (line.find(R"("usage")") != line.npos || line.find("\\u0061") != line.npos)
                expected.push_back(line);
        }
        std::vector<std::string> mentioning;
        forEachLine(lines, LineSelection::mentioning, "usage",
                    [&mentioning](std::string_view line) { mentioning.emplace_back(line); });
        ASSERT_EQ(mentioning, expected) << testing::PrintToString(text);
        found += mentioning.size();
    });
    EXPECT_GT(found, 8'000U);
}

TEST(LineCounter, numbersEveryLine)
{
    const HistoryLines lines("\nzero\n\none\r\nstill one\ntwo\n\n\nthree");
    LineCounter counter(lines);
    std::size_t place = 0;
    for (const std::string_view line : linesOf(lines))
        EXPECT_EQ(counter.indexOf(line), place++) << line;
    EXPECT_EQ(place, 4U);
}

TEST(LineCounter, linesInBetweenMayBeSkipped)
{
    const HistoryLines lines("zero\none\ntwo\nthree\nfour");
    const Lines all = linesOf(lines);
    LineCounter counter(lines);
    EXPECT_EQ(counter.indexOf(all[1]), 1U);
    EXPECT_EQ(counter.indexOf(all[4]), 4U);
    EXPECT_EQ(counter.indexOf(all[4]), 4U);
}

TEST(LineCounter, countsFromTheFirstRemainingLine)
{
    const HistoryLines lines = HistoryLines("cut off\nzero\none").withoutFirst();
    LineCounter counter(lines);
    EXPECT_EQ(counter.indexOf(linesOf(lines)[1]), 1U);
}

} // namespace
} // namespace tallyfox::test
