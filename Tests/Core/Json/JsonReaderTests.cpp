#include "Support/GuardedText.h"
#include "TallyfoxCore/Json/JsonReader.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tallyfox::test {
namespace {

using Type = JsonReader::Type;

TEST(JsonReader, firstCharacterDecidesTheType)
{
    const std::vector<std::pair<std::string_view, Type>> table{
        {"null", Type::null},        {" \r\n\ttrue", Type::boolean},
        {"false", Type::boolean},    {"-1", Type::number},
        {"0", Type::number},         {"9", Type::number},
        {"\"", Type::string},        {"{", Type::object},
        {"[", Type::array},          {"", Type::none},
        {"  ", Type::none},          {"+1", Type::none},
        {".5", Type::none},          {"N", Type::none},
        {"]", Type::none},           {"}", Type::none},
        {"\xEF\xBB\xBF", Type::none}};
    for (const auto& [text, type] : table)
        EXPECT_EQ(JsonReader(text).nextType(), type) << text;
    EXPECT_EQ(JsonReader(std::string_view("\0", 1)).nextType(), Type::none);
}

TEST(JsonReader, membersComeInTheirOrder)
{
    JsonReader reader(R"( { "text" : "a\nb" , "number" : -1.50e2, "none":null, "inner":{"x":1}, "skipped":[{}] } )");
    JsonString key;
    JsonString string;
    JsonNumber number;
    ASSERT_TRUE(reader.beginObject());
    ASSERT_TRUE(reader.nextMember(key));
    EXPECT_EQ(key.raw, "text");
    ASSERT_TRUE(reader.readString(string));
    EXPECT_EQ(string.raw, R"(a\nb)");
    EXPECT_TRUE(string.hasEscapes);
    ASSERT_TRUE(reader.nextMember(key));
    EXPECT_EQ(key.raw, "number");
    ASSERT_TRUE(reader.readNumber(number));
    EXPECT_EQ(number.raw, "-1.50e2");
    ASSERT_TRUE(reader.nextMember(key));
    EXPECT_EQ(key.raw, "none");
    ASSERT_EQ(reader.nextType(), Type::null);
    ASSERT_TRUE(reader.skipValue());
    ASSERT_TRUE(reader.nextMember(key));
    ASSERT_TRUE(reader.beginObject());
    ASSERT_TRUE(reader.nextMember(key));
    EXPECT_EQ(key.raw, "x");
    ASSERT_TRUE(reader.skipValue());
    EXPECT_FALSE(reader.nextMember(key));
    ASSERT_TRUE(reader.nextMember(key));
    EXPECT_EQ(key.raw, "skipped");
    EXPECT_FALSE(key.hasEscapes);
    ASSERT_TRUE(reader.skipValue());
    EXPECT_FALSE(reader.nextMember(key));
    EXPECT_TRUE(reader.finish());
}

TEST(JsonReader, emptyObjectHasNoMembers)
{
    JsonReader reader("{ }");
    JsonString key;
    ASSERT_TRUE(reader.beginObject());
    EXPECT_FALSE(reader.nextMember(key));
    EXPECT_TRUE(reader.finish());
}

TEST(JsonReader, emptyObjectAsAMemberEndsOnlyItself)
{
    JsonReader reader(R"({"a":{},"b":1})");
    JsonString key;
    ASSERT_TRUE(reader.beginObject());
    ASSERT_TRUE(reader.nextMember(key));
    ASSERT_TRUE(reader.beginObject());
    EXPECT_FALSE(reader.nextMember(key));
    ASSERT_TRUE(reader.nextMember(key));
    EXPECT_EQ(key.raw, "b");
    ASSERT_TRUE(reader.skipValue());
    EXPECT_FALSE(reader.nextMember(key));
    EXPECT_TRUE(reader.finish());
}

TEST(JsonReader, textIsNotFinishedBeforeItsEnd)
{
    JsonReader open(R"({"a":1})");
    EXPECT_FALSE(open.finish());
    ASSERT_TRUE(open.beginObject());
    JsonString key;
    ASSERT_TRUE(open.nextMember(key));
    ASSERT_TRUE(open.skipValue());
    EXPECT_FALSE(open.finish());
    JsonReader truncated("{");
    ASSERT_TRUE(truncated.beginObject());
    EXPECT_FALSE(truncated.finish());
    JsonReader nothing("");
    EXPECT_FALSE(nothing.skipValue());
    EXPECT_FALSE(nothing.finish());
}

TEST(JsonReader, typeOtherThanAskedForIsAnError)
{
    JsonString string;
    JsonNumber number;
    for (const char* text : {"null", "true", "1", "\"\"", "[]", "]"})
        EXPECT_FALSE(JsonReader(text).beginObject()) << text;
    for (const char* text : {"null", "true", "1", "{}", "[]", "}"})
        EXPECT_FALSE(JsonReader(text).readString(string)) << text;
    for (const char* text : {"null", "true", "\"1\"", "{}", "[]", "}"})
        EXPECT_FALSE(JsonReader(text).readNumber(number)) << text;
}

TEST(JsonReader, afterAnErrorEveryOperationFails)
{
    JsonReader reader(R"({"a":tru,"b":{"c":1},"d":"x","e":2,"f":null})");
    JsonString string;
    JsonNumber number;
    ASSERT_TRUE(reader.beginObject());
    ASSERT_TRUE(reader.nextMember(string));
    ASSERT_FALSE(reader.skipValue());
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(reader.nextType(), Type::none);
        EXPECT_FALSE(reader.beginObject());
        EXPECT_FALSE(reader.nextMember(string));
        EXPECT_FALSE(reader.readString(string));
        EXPECT_FALSE(reader.readNumber(number));
        EXPECT_FALSE(reader.skipValue());
        EXPECT_FALSE(reader.finish());
    }
}

TEST(JsonReader, errorAtTheVeryEndIsReported)
{
    JsonReader reader("1.");
    JsonNumber number;
    ASSERT_FALSE(reader.readNumber(number));
    EXPECT_FALSE(reader.finish());
}

TEST(JsonReader, stringOfAnyLengthEndsAtItsQuotationMark)
{
    for (std::size_t length = 0; length < 300; ++length) {
        const std::string content(length, 'x');
        const std::string text = "  \"" + content + "\",rest of the text";
        JsonReader reader(text);
        JsonString string;
        ASSERT_TRUE(reader.readString(string));
        EXPECT_EQ(string.raw, content);
        EXPECT_FALSE(string.hasEscapes);
    }
}

TEST(JsonReader, specialCharacterIsFoundAtEveryPositionOfAString)
{
    for (std::size_t length = 1; length < 150; ++length) {
        for (std::size_t position = 0; position < length; ++position) {
            std::string control = "\"" + std::string(length, 'x') + "\"";
            control[1 + position] = '\x1F';
            EXPECT_FALSE(JsonReader(control).skipValue()) << length << ' ' << position;
            const std::string escaped =
                "\"" + std::string(position, '\x7F') + R"(\")" + std::string(length - position, '\xFF') + "\"";
            JsonReader reader(escaped);
            JsonString string;
            ASSERT_TRUE(reader.readString(string)) << length << ' ' << position;
            EXPECT_TRUE(string.hasEscapes);
            EXPECT_EQ(string.raw.size(), length + 2);
            EXPECT_TRUE(reader.finish());
        }
    }
}

TEST(JsonReader, escapeMarkIsClearedForTheNextString)
{
    JsonReader reader(R"({"\u0061":"b"})");
    JsonString string;
    ASSERT_TRUE(reader.beginObject());
    ASSERT_TRUE(reader.nextMember(string));
    EXPECT_TRUE(string.hasEscapes);
    ASSERT_TRUE(reader.readString(string));
    EXPECT_FALSE(string.hasEscapes);
    EXPECT_EQ(string.raw, "b");
}

TEST(JsonReader, textIsReadOnlyUpToItsEnd)
{
    const std::string_view whole = R"("abcdefghijklmnop"123)";
    JsonString string;
    EXPECT_FALSE(JsonReader(whole.substr(0, 17)).readString(string));
    JsonReader number(whole.substr(18, 1));
    JsonNumber digits;
    ASSERT_TRUE(number.readNumber(digits));
    EXPECT_EQ(digits.raw, "1");
    EXPECT_TRUE(number.finish());
}

TEST(JsonReader, valueOfAnyLengthAtTheEndOfMemoryIsReadWithoutAByteBeyondIt)
{
    GuardedText room(256);
    for (std::size_t length = 1; length < 150; ++length) {
        const std::string content(length, '7');
        JsonReader numberReader(room.atEnd(content));
        JsonNumber number;
        ASSERT_TRUE(numberReader.readNumber(number));
        EXPECT_EQ(number.raw, content);
        EXPECT_TRUE(numberReader.finish());

        JsonReader stringReader(room.atEnd('"' + content + '"'));
        JsonString string;
        ASSERT_TRUE(stringReader.readString(string));
        EXPECT_EQ(string.raw, content);
        EXPECT_TRUE(stringReader.finish());
        EXPECT_FALSE(JsonReader(room.atEnd('"' + content)).skipValue());
    }
}

} // namespace
} // namespace tallyfox::test
