#include "Support/GuardedText.h"
#include "Support/HeapWatch.h"
#include "Support/JsonTexts.h"
#include "TallyfoxCore/Json/JsonReader.h"
#include "TallyfoxCore/Json/JsonShapes.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tallyfox::test {
namespace {

bool isGrammatical(std::string_view text)
{
    JsonReader reader(text);
    return reader.skipValue() && reader.finish();
}

std::vector<std::string> firstValues(const JsonShapes::Values& values, std::size_t count)
{
    std::vector<std::string> texts;
    for (std::size_t index = 0; index < count; ++index)
        texts.emplace_back(values[index].raw);
    return texts;
}

constexpr std::string_view record = R"({"id":"a","count":5,"on":true,"list":["b",-1.5e3,{"c":null}]})";

TEST(JsonShapes, textOfAKnownShapeGivesItsValues)
{
    JsonShapes shapes;
    JsonShapes::Values values;
    EXPECT_EQ(shapes.match(record, values), std::nullopt);
    ASSERT_EQ(shapes.learn(record), 0U);
    ASSERT_EQ(shapes.match(record, values), 0U);
    EXPECT_EQ(firstValues(values, 4), (std::vector<std::string>{"a", "5", "b", "-1.5e3"}));
    EXPECT_FALSE(values[0].hasEscapes);
    ASSERT_EQ(shapes.match(R"({"id":"x\ny","count":0,"on":true,"list":["",1E9,{"c":null}]})", values), 0U);
    EXPECT_EQ(firstValues(values, 4), (std::vector<std::string>{R"(x\ny)", "0", "", "1E9"}));
    EXPECT_TRUE(values[0].hasEscapes);
    EXPECT_FALSE(values[2].hasEscapes);
}

TEST(JsonShapes, stringsAsLongAsTheLastTimeAreFoundAgain)
{
    JsonShapes shapes;
    JsonShapes::Values values;
    ASSERT_EQ(shapes.learn(record), 0U);
    for (const char* id : {"abc", "xyz", "abcd", "wxyz"}) {
        const std::string text =
            R"({"id":")" + std::string{id} + R"(","count":5,"on":true,"list":["b",-1.5e3,{"c":null}]})";
        ASSERT_EQ(shapes.match(text, values), 0U) << text;
        EXPECT_EQ(values[0].raw, id);
    }
}

TEST(JsonShapes, keyWithSpaceBehindItIsNoValue)
{
    JsonShapes shapes;
    JsonShapes::Values values;
    ASSERT_EQ(shapes.learn("{\"id\" \t\r\n:\"a\"}"), 0U);
    ASSERT_EQ(shapes.match("{\"id\" \t\r\n:\"b\"}", values), 0U);
    EXPECT_EQ(values[0].raw, "b");
    EXPECT_EQ(shapes.match("{\"di\" \t\r\n:\"b\"}", values), std::nullopt);
}

TEST(JsonShapes, whateverElseDiffersIsAnotherShape)
{
    JsonShapes shapes;
    JsonShapes::Values values;
    ASSERT_EQ(shapes.learn(record), 0U);
    for (const char* other : {
             R"({"id":"a","count":5,"on":false,"list":["b",-1.5e3,{"c":null}]})",
             R"({"id":"a","count":"5","on":true,"list":["b",-1.5e3,{"c":null}]})",
             R"({"id":7,"count":5,"on":true,"list":["b",-1.5e3,{"c":null}]})",
             R"({"id":null,"count":5,"on":true,"list":["b",-1.5e3,{"c":null}]})",
             R"({"Id":"a","count":5,"on":true,"list":["b",-1.5e3,{"c":null}]})",
             R"({"\u0069d":"a","count":5,"on":true,"list":["b",-1.5e3,{"c":null}]})",
             R"({"id":"a","count":5 ,"on":true,"list":["b",-1.5e3,{"c":null}]})",
             R"({"id":"a","count":5,"on":true,"list":["b",-1.5e3,{"c":null}]} )",
             R"({"id":"a","count":5,"on":true,"list":["b",-1.5e3,{"c":null},"d"]})",
             R"({"id":"a","count":5,"on":true,"list":["b",-1.5e3]})",
             R"({"id":"a"})",
         })
    {
        ASSERT_TRUE(isGrammatical(other)) << other;
        EXPECT_EQ(shapes.match(other, values), std::nullopt) << other;
    }
}

TEST(JsonShapes, valueThatBreaksTheGrammarNeverMatches)
{
    JsonShapes shapes;
    JsonShapes::Values values;
    ASSERT_TRUE(shapes.learn(R"({"n":1,"s":"x"})"));
    for (const char* number :
         {"", "01", "-", "1.", ".5", "1e", "1e+", "+1", "0x1", "1 ", "--1", "1-", "NaN", "12345678901234567890."})
    {
        const std::string text = "{\"n\":" + std::string(number) + R"(,"s":"a string of more than sixteen bytes"})";
        EXPECT_EQ(shapes.match(text, values), std::nullopt) << text;
    }
    for (const char* string :
         {"\n", "\t and more than sixteen bytes", R"(\x)", R"(\u12)", R"(\u12g4)", R"(a"b)", R"(\)", "\"", "\x01"})
    {
        const std::string text = R"({"n":1,"s":")" + std::string(string) + "\"}";
        EXPECT_EQ(shapes.match(text, values), std::nullopt) << text;
    }
}

TEST(JsonShapes, beginsThatAreAlikeLeadToTheRightShape)
{
    const std::vector<std::string> texts{R"({"a":1})",
                                         R"({"a":"1"})",
                                         R"({"a":null})",
                                         R"({"a":[]})",
                                         R"({"a":1,"b":"2"})",
                                         R"({"a":1,"b":2})",
                                         R"({"a":[1]})",
                                         R"({"a":[1,2]})",
                                         R"({"a":null,"b":1})",
                                         R"([])",
                                         R"(1)",
                                         R"("1")",
                                         R"(null)"};
    JsonShapes shapes;
    JsonShapes::Values values;
    for (std::size_t index = 0; index < texts.size(); ++index)
        ASSERT_EQ(shapes.learn(texts[index]), index);
    for (std::size_t index = 0; index < texts.size(); ++index)
        EXPECT_EQ(shapes.match(texts[index], values), index) << texts[index];
    EXPECT_EQ(shapes.learn(texts[4]), 4U) << "a shape is learned once";
}

TEST(JsonShapes, everyLegalTextMatchesOnceItIsLearned)
{
    GuardedText room(64 * 1024);
    JsonShapes::Values values;
    for (const std::string_view text : legalJsonTexts()) {
        JsonShapes shapes;
        const std::string_view guarded = room.atEnd(text);
        ASSERT_EQ(shapes.learn(guarded), 0U) << text;
        EXPECT_EQ(shapes.match(guarded, values), 0U) << text;
        const std::string_view cut = guarded.substr(0, guarded.size() - 1);
        EXPECT_TRUE(isGrammatical(cut) || !shapes.match(cut, values)) << text;
    }
}

/// Whatever is done to a text of a known shape: what matches must be grammatical, and no byte beyond it may be read.
TEST(JsonShapes, changedTextThatMatchesIsGrammatical)
{
    constexpr std::size_t rounds = 200'000;
    constexpr std::string_view tempting = "\"\\,:{}[]0123456789-+.eEutfn \n\x01\x80";
    GuardedText room(64 * 1024);
    JsonShapes shapes;
    JsonShapes::Values values;
    const std::string original(
        R"({"id":"a\u00e9","count":50,"long":"more than sixteen bytes of text, and more","n":[-1,0,0.5]})");
    ASSERT_TRUE(shapes.learn(original));
    std::mt19937 random(7);
    std::size_t matches = 0;
    for (std::size_t round = 0; round < rounds; ++round) {
        std::string text = original;
        for (std::size_t changes = 1 + random() % 2; changes > 0; --changes) {
            const std::size_t place = random() % text.size();
            if (random() % 3 == 0)
                text.erase(place, 1);
            else
                text.replace(place, random() % 2, 1, tempting[random() % tempting.size()]);
        }
        if (!shapes.match(room.atEnd(text), values))
            continue;
        ++matches;
        ASSERT_TRUE(isGrammatical(text)) << text;
    }
    EXPECT_GT(matches, rounds / 20) << "the changes would prove nothing";
}

TEST(JsonShapes, onlyAsMuchIsLearnedAsThereIsRoomFor)
{
    const auto listOf = [](std::size_t values) {
        std::string text = "[0";
        while (--values > 0)
            text += ",0";
        return text + ']';
    };
    JsonShapes shapes;
    JsonShapes::Values values;
    EXPECT_EQ(shapes.learn(listOf(JsonShapes::mostValues + 1)), std::nullopt);
    EXPECT_EQ(shapes.learn(listOf(JsonShapes::mostValues)), 0U);
    EXPECT_EQ(shapes.match(listOf(JsonShapes::mostValues), values), 0U);
    EXPECT_EQ(shapes.match(listOf(JsonShapes::mostValues + 1), values), std::nullopt);
    EXPECT_EQ(shapes.learn("{\"" + std::string(JsonShapes::mostBytes, 'k') + "\":1}"), std::nullopt);
}

TEST(JsonShapes, onePieceIsFollowedByABoundedNumberOfOthers)
{
    JsonShapes shapes;
    JsonShapes::Values values;
    const auto object = [](std::size_t index) { return "{\"k" + std::to_string(index) + "\":1,\"same\":\"x\"}"; };
    std::size_t learned = 0;
    for (std::size_t index = 0; index < 10 * JsonShapes::mostSiblings; ++index)
        learned += std::size_t{shapes.learn(object(index)).has_value()};
    EXPECT_EQ(learned, JsonShapes::mostSiblings);
    EXPECT_EQ(shapes.match(object(3), values), 3U);
}

TEST(JsonShapes, manyShapesAreRefusedAtSomePointAndTheFirstOnesStay)
{
    JsonShapes shapes;
    JsonShapes::Values values;
    const auto chain = [](std::size_t index) {
        std::string text = "[";
        for (std::size_t bit = 0; bit < 13; ++bit)
            text += (index >> bit & 1) != 0 ? "1," : "\"1\",";
        return text + "0]";
    };
    std::size_t learned = 0;
    for (std::size_t index = 0; index < JsonShapes::mostPieces; ++index)
        learned += std::size_t{shapes.learn(chain(index)).has_value()};
    EXPECT_GT(learned, JsonShapes::mostPieces / 14);
    EXPECT_LT(learned, JsonShapes::mostPieces);
    EXPECT_TRUE(shapes.match(chain(0), values));
}

TEST(JsonShapes, nothingIsLearnedAnyMoreAfterManyTextsThereWasNoRoomFor)
{
    JsonShapes shapes;
    JsonShapes::Values values;
    const std::string large = "{\"" + std::string(JsonShapes::mostBytes, 'k') + "\":1}";
    for (std::size_t count = 1; count < JsonShapes::mostRefusals; ++count)
        EXPECT_EQ(shapes.learn(large), std::nullopt);
    EXPECT_EQ(shapes.learn(record), 0U);
    EXPECT_EQ(shapes.learn(large), std::nullopt);
    EXPECT_EQ(shapes.learn("[1]"), std::nullopt);
    EXPECT_EQ(shapes.match(record, values), 0U);
}

TEST(JsonShapes, matchingTakesNothingFromTheHeap)
{
    JsonShapes shapes;
    JsonShapes::Values values;
    ASSERT_TRUE(shapes.learn(record));
    const HeapWatch count;
    const auto shape = shapes.match(record, values);
    EXPECT_EQ(count.blocks(), 0U);
    EXPECT_TRUE(shape);
}

} // namespace
} // namespace tallyfox::test
