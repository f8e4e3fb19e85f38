#include "Tallyfox/Engine/Quota/LineAssembler.h"

#include <gtest/gtest.h>

#include <vector>

namespace tallyfox::test {

namespace {

/// The lines assembled from `text` in pieces of `pieceSize`.
std::vector<std::string> lines(std::string_view text, std::size_t pieceSize, std::size_t maximumLength)
{
    std::vector<std::string> found;
    LineAssembler assembler{maximumLength};
    for (std::size_t begin = 0; begin < text.size(); begin += pieceSize) {
        std::string_view piece = text.substr(begin, pieceSize);
        while (const auto line = assembler.next(piece))
            found.emplace_back(*line);
    }
    if (const auto line = assembler.last())
        found.emplace_back(*line);
    return found;
}

using Lines = std::vector<std::string>;

} // namespace

TEST(LineAssembler, linesDoNotDependOnHowTheStreamIsSplit)
{
    const std::string text = "one\n\ntwo and more\r\nthree\nrest";
    for (std::size_t pieceSize = 1; pieceSize <= text.size(); ++pieceSize)
        EXPECT_EQ(lines(text, pieceSize, 100), (Lines{"one", "", "two and more\r", "three", "rest"})) << pieceSize;
}

TEST(LineAssembler, lineOfMaximumLengthIsKeptAndALongerOneDropped)
{
    for (std::size_t pieceSize = 1; pieceSize <= 12; ++pieceSize) {
        EXPECT_EQ(lines("12345\nok\n", pieceSize, 5), (Lines{"12345", "ok"})) << pieceSize;
        EXPECT_EQ(lines("123456\nok\n", pieceSize, 5), (Lines{"ok"})) << pieceSize;
        EXPECT_EQ(lines("ok\n123456", pieceSize, 5), (Lines{"ok"})) << pieceSize;
        EXPECT_EQ(lines("ok\n12345", pieceSize, 5), (Lines{"ok", "12345"})) << pieceSize;
    }
}

TEST(LineAssembler, streamThatEndsWithALineFeedHasNoLastLine)
{
    EXPECT_EQ(lines("a\n", 1, 5), (Lines{"a"}));
    EXPECT_EQ(lines("", 1, 5), Lines{});
}

} // namespace tallyfox::test
