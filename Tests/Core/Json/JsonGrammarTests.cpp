#include "Support/JsonTexts.h"
#include "TallyfoxCore/Json/JsonFields.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>

namespace tallyfox::test {
namespace {

constexpr std::size_t maximumDepth = JsonReader::maximumDepth;

bool isSkippable(std::string_view text)
{
    JsonReader reader(text);
    const bool wasSkipped = reader.skipValue();
    const bool isWhole = reader.finish();
    EXPECT_TRUE(wasSkipped || !isWhole) << "finished what could not be skipped";
    return isWhole;
}

/// Wants no members, so that everything in the object is skipped.
struct Nothing {
    static constexpr auto members()
    {
        return std::tuple{};
    }
};

template <typename Field> struct Wanted {
    Field wanted;

    static constexpr auto members()
    {
        return std::tuple{optionalMember("wanted", &Wanted::wanted)};
    }
};

template <typename Field> bool isReadable(std::string_view value)
{
    Wanted<Field> record;
    return readJsonObject(R"({"before":[1],"wanted":)" + std::string(value) + "}", record);
}

void expectVerdict(std::string_view text, bool isLegal)
{
    EXPECT_EQ(isSkippable(text), isLegal);
    EXPECT_EQ(isSkippable("[0," + std::string(text) + "\n]"), isLegal);
    EXPECT_EQ(isReadable<StringField>(text), isLegal);
    EXPECT_EQ(isReadable<IntegerField>(text), isLegal);
    EXPECT_EQ(isReadable<DoubleField>(text), isLegal);
    EXPECT_EQ(isReadable<ObjectField<Nothing>>(text), isLegal);
    EXPECT_EQ(isReadable<ObjectField<Wanted<StringField>>>(text), isLegal);
    Nothing nothing;
    EXPECT_EQ(readJsonObject(R"({"other":)" + std::string(text) + "}", nothing), isLegal);
}

TEST(JsonGrammar, legalTextsAreAcceptedSkippedAndRead)
{
    ASSERT_GE(legalJsonTexts().size(), 100U);
    for (const std::string_view text : legalJsonTexts()) {
        SCOPED_TRACE(testing::PrintToString(text));
        expectVerdict(text, true);
    }
}

TEST(JsonGrammar, nearMissesAreRefusedSkippedAndRead)
{
    ASSERT_GE(refusedJsonTexts().size(), 150U);
    for (const std::string_view text : refusedJsonTexts()) {
        SCOPED_TRACE(testing::PrintToString(text));
        expectVerdict(text, false);
    }
}

TEST(JsonGrammar, tablesHaveNoTextInCommon)
{
    const std::set<std::string_view> legal(legalJsonTexts().begin(), legalJsonTexts().end());
    EXPECT_EQ(legal.size(), legalJsonTexts().size());
    for (const std::string_view text : refusedJsonTexts())
        EXPECT_FALSE(legal.contains(text)) << testing::PrintToString(text);
}

TEST(JsonGrammar, everyLegalTextMayOccurTwiceInAnArray)
{
    for (const std::string_view text : legalJsonTexts()) {
        const std::string array = "[" + std::string(text) + "," + std::string(text) + "]";
        EXPECT_TRUE(isSkippable(array)) << testing::PrintToString(array);
    }
}

TEST(JsonGrammar, everyControlCharacterInAStringIsRefused)
{
    for (int value = 0; value < 0x100; ++value) {
        const bool isLegal = value >= 0x20 && value != '"' && value != '\\';
        const std::string text = "\"" + std::string(1, static_cast<char>(value)) + "\"";
        EXPECT_EQ(isSkippable(text), isLegal) << value;
    }
}

TEST(JsonGrammar, onlyFourBytesAreWhiteSpace)
{
    for (int value = 0; value < 0x100; ++value) {
        const auto character = static_cast<char>(value);
        const bool isSpace = std::string_view(" \t\r\n").find(character) != std::string_view::npos;
        const std::string space(1, character);
        for (const std::string& text :
             {space + "true", "true" + space, "[" + space + "true]", "{" + space + "}", R"({"a")" + space + ":1}",
              R"({"a":)" + space + "true}", R"({"a":true)" + space + "}", "[true" + space + ",true]"})
            EXPECT_EQ(isSkippable(text), isSpace) << testing::PrintToString(text);
    }
}

TEST(JsonGrammar, everyByteAfterABackslashIsJudged)
{
    for (int value = 0; value < 0x100; ++value) {
        const auto letter = static_cast<char>(value);
        const bool isLegal = std::string_view("\"\\/bfnrt").find(letter) != std::string_view::npos;
        const std::string text = std::string("\"\\") + letter + "\"";
        EXPECT_EQ(isSkippable(text), isLegal && value != 0) << value;
        const std::string unicode = std::string("\"\\u00") + letter + "0\"";
        const bool isHexDigit = std::string_view("0123456789abcdefABCDEF").find(letter) != std::string_view::npos;
        EXPECT_EQ(isSkippable(unicode), isHexDigit && value != 0) << value;
    }
}

TEST(JsonGrammar, textTruncatedAnywhereIsRefused)
{
    const std::string_view rich = richJsonText();
    ASSERT_TRUE(isSkippable(rich));
    const std::size_t lastByte = rich.find_last_of('}');
    for (std::size_t size = 0; size <= lastByte; ++size)
        EXPECT_FALSE(isSkippable(rich.substr(0, size))) << size;
    for (std::size_t size = lastByte + 1; size <= rich.size(); ++size)
        EXPECT_TRUE(isSkippable(rich.substr(0, size))) << size;
}

TEST(JsonGrammar, objectTruncatedAnywhereIsNotRead)
{
    const std::string_view rich = richJsonText();
    for (std::size_t size = 0; size <= rich.find_last_of('}'); ++size) {
        Wanted<ObjectField<Nothing>> record;
        EXPECT_FALSE(readJsonObject(rich.substr(0, size), record)) << size;
    }
}

TEST(JsonGrammar, onlyWhiteSpaceMayFollowTheValue)
{
    for (int value = 0; value < 0x100; ++value) {
        const auto character = static_cast<char>(value);
        const bool isSpace = std::string_view(" \t\r\n").find(character) != std::string_view::npos;
        EXPECT_EQ(isSkippable(std::string("{}") + character), isSpace) << value;
        EXPECT_EQ(isSkippable(std::string("\"\" ") + character), isSpace) << value;
    }
}

TEST(JsonGrammar, nestingUpToTheBoundIsAccepted)
{
    static_assert(maximumDepth >= 512);
    for (const std::size_t depth : {std::size_t{1}, std::size_t{63}, std::size_t{64}, std::size_t{65}, std::size_t{512},
                                    maximumDepth - 1, maximumDepth})
    {
        EXPECT_TRUE(isSkippable(nestedArrays(depth))) << depth;
        EXPECT_TRUE(isSkippable(nestedObjects(depth))) << depth;
    }
    EXPECT_TRUE(isSkippable(
        nestedArrays(maximumDepth / 2 - 1).replace(maximumDepth / 2 - 1, 1, nestedObjects(maximumDepth / 2))));
}

TEST(JsonGrammar, nestingBeyondTheBoundIsRefusedAtAnyDepth)
{
    for (const std::size_t depth : {maximumDepth + 1, maximumDepth + 2, std::size_t{100'000}, std::size_t{500'000}}) {
        EXPECT_FALSE(isSkippable(nestedArrays(depth))) << depth;
        EXPECT_FALSE(isSkippable(nestedObjects(depth))) << depth;
        EXPECT_FALSE(isSkippable(std::string(depth, '['))) << depth;
    }
}

TEST(JsonGrammar, depthIsCountedFromTheOutermostObject)
{
    EXPECT_TRUE(isReadable<StringField>(nestedArrays(maximumDepth - 1)));
    EXPECT_FALSE(isReadable<StringField>(nestedArrays(maximumDepth)));
    EXPECT_TRUE(isReadable<ObjectField<Nothing>>(nestedObjects(maximumDepth - 1)));
    EXPECT_FALSE(isReadable<ObjectField<Nothing>>(nestedObjects(maximumDepth)));
}

TEST(JsonGrammar, depthCountsOpenContainersOnly)
{
    std::string text = "[";
    for (std::size_t index = 0; index < 3 * maximumDepth; ++index)
        text += R"([{"a":[]}],)";
    EXPECT_TRUE(isSkippable(text + nestedArrays(maximumDepth - 1) + "]"));
    EXPECT_FALSE(isSkippable(text + nestedArrays(maximumDepth) + "]"));
}

TEST(JsonGrammar, containersMustCloseAsTheyOpenedAtEveryDepth)
{
    const std::size_t depth = 130;
    std::string opened;
    std::string closed;
    for (std::size_t level = 0; level < depth; ++level) {
        const bool isObject = level % 3 == 0;
        opened += isObject ? R"({"a":)" : "[";
        closed.insert(closed.begin(), isObject ? '}' : ']');
    }
    EXPECT_TRUE(isSkippable(opened + "1" + closed));
    for (std::size_t level = 0; level < depth; ++level) {
        std::string wrong = closed;
        wrong[level] = wrong[level] == '}' ? ']' : '}';
        EXPECT_FALSE(isSkippable(opened + "1" + wrong)) << level;
    }
}

} // namespace
} // namespace tallyfox::test
