#include "TallyfoxCore/JsonFields.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace tallyfox::test {
namespace {

struct Inner {
    IntegerField count;
    StringField name;

    bool readMember(const JsonString& key, JsonReader& reader)
    {
        if (key.equals("count"))
            count.read(reader);
        else if (key.equals("name"))
            name.read(reader);
        else
            return false;
        return true;
    }
    [[nodiscard]] bool isDecodable() const
    {
        return count.isDecodable() && name.isDecodable();
    }
};

struct Outer {
    StringField id;
    IntegerField count;
    DoubleField share;
    ObjectField<Inner> inner;

    bool readMember(const JsonString& key, JsonReader& reader)
    {
        if (key.equals("id"))
            id.read(reader);
        else if (key.equals("count"))
            count.read(reader);
        else if (key.equals("share"))
            share.read(reader);
        else if (key.equals("inner"))
            inner.read(reader);
        else
            return false;
        return true;
    }
    [[nodiscard]] bool isDecodable() const
    {
        return id.isDecodable() && count.isDecodable() && share.isDecodable() && inner.isDecodable();
    }
};

/// What `text`, which must be a grammatical object, holds.
Outer read(std::string_view text)
{
    Outer outer;
    EXPECT_TRUE(readJsonObject(text, outer)) << text;
    return outer;
}

TEST(JsonFields, wantedMembersAreReadAmongOthers)
{
    const Outer outer = read(R"({"x":[1],"share":0.5,"id":"a","y":{"id":"no"},"count":5.0,"inner":{"count":7}})");
    EXPECT_TRUE(outer.isDecodable());
    EXPECT_EQ(outer.id.value.raw, "a");
    EXPECT_EQ(outer.count.valueOr(-1), 5);
    EXPECT_EQ(outer.share.valueOr(-1), 0.5);
    ASSERT_TRUE(outer.inner.isPresent());
    EXPECT_EQ(outer.inner.members.count.valueOr(-1), 7);
    EXPECT_EQ(outer.inner.members.name.state, FieldState::absent);
}

TEST(JsonFields, membersOfTheSameNameElsewhereDoNotCount)
{
    const Outer outer = read(R"({"other":{"id":"no","count":"no"},"list":[{"id":1}],"inner":{"id":3,"share":"no"}})");
    EXPECT_TRUE(outer.isDecodable());
    EXPECT_EQ(outer.id.state, FieldState::absent);
    EXPECT_EQ(outer.count.state, FieldState::absent);
    EXPECT_EQ(outer.share.state, FieldState::absent);
}

TEST(JsonFields, escapedKeyIsTheSameKey)
{
    const Outer outer = read(R"({"\u0069\u0064":"a","c\u006Funt":2,"inn\u0065r":{"n\u0061me":"b"},"\\u0069d":3})");
    EXPECT_TRUE(outer.isDecodable());
    EXPECT_EQ(outer.id.value.raw, "a");
    EXPECT_EQ(outer.count.valueOr(-1), 2);
    EXPECT_EQ(outer.inner.members.name.value.raw, "b");
}

TEST(JsonFields, nullIsAbsent)
{
    const Outer outer = read(R"({"id":null,"count":null,"share":null,"inner":null})");
    EXPECT_TRUE(outer.isDecodable());
    EXPECT_EQ(outer.id.state, FieldState::absent);
    EXPECT_EQ(outer.count.state, FieldState::absent);
    EXPECT_EQ(outer.count.valueOr(-1), -1);
    EXPECT_EQ(outer.share.state, FieldState::absent);
    EXPECT_EQ(outer.inner.state, FieldState::absent);
    EXPECT_FALSE(outer.inner.isPresent());
}

TEST(JsonFields, everyOtherTypeIsWrongButStillGrammatical)
{
    for (const std::string value : {"true", "false", "0", "\"\"", "[]", "[1]", "{}", "1.5", R"({"a":[{}]})"}) {
        const bool isString = value.front() == '"';
        const bool isNumber = value == "0" || value == "1.5";
        const bool isObject = value.front() == '{';
        EXPECT_EQ(read(R"({"id":)" + value + "}").isDecodable(), isString) << value;
        EXPECT_EQ(read(R"({"count":)" + value + "}").isDecodable(), isNumber && value != "1.5") << value;
        EXPECT_EQ(read(R"({"share":)" + value + "}").isDecodable(), isNumber) << value;
        EXPECT_EQ(read(R"({"inner":)" + value + "}").isDecodable(), isObject) << value;
        EXPECT_EQ(read(R"({"inner":{"count":)" + value + "}}").isDecodable(), isNumber && value != "1.5") << value;
        EXPECT_TRUE(read(R"({"unknown":)" + value + "}").isDecodable()) << value;
    }
}

TEST(JsonFields, numberThatItsTypeCannotHoldIsWrong)
{
    for (const std::string& value : {std::string("9223372036854775808"), std::string("0.5"), std::string("1e400"),
                                     std::string("1e19"), std::string(60, '7')})
        EXPECT_EQ(read(R"({"count":)" + value + "}").count.state, FieldState::wrongType) << value;
    EXPECT_EQ(read(R"({"share":1e400})").share.state, FieldState::wrongType);
    EXPECT_EQ(read(R"({"share":)" + std::string(400, '7') + "}").share.state, FieldState::wrongType);
    EXPECT_EQ(read(R"({"share":9223372036854775808})").share.value, 9223372036854775808.0);
}

TEST(JsonFields, unknownMembersMayHoldAnythingLegal)
{
    for (const std::string& value :
         {std::string("1e400"), std::string("-1e99999"), std::string(60, '9'), std::string(R"("\ud800 \udc00")"),
          std::string("\"\xFF\xC3\""), std::string(1000, '[') + std::string(1000, ']'),
          "\"" + std::string(100'000, 'x') + "\"", std::string(R"({"id":1,"count":"x","inner":[]})")})
    {
        const std::string text = R"({"id":"a","unknown":)" + value + R"(,"\ud800":)" + value + R"(,"count":1})";
        const Outer outer = read(text);
        EXPECT_TRUE(outer.isDecodable()) << value.substr(0, 80);
        EXPECT_EQ(outer.id.value.raw, "a");
        EXPECT_EQ(outer.count.valueOr(-1), 1);
    }
}

TEST(JsonFields, lastOfDuplicateMembersCounts)
{
    const Outer outer = read(R"({"id":"a","count":1,"share":1,"id":"b","count":2,"share":2,"\u0069d":"c"})");
    EXPECT_TRUE(outer.isDecodable());
    EXPECT_EQ(outer.id.value.raw, "c");
    EXPECT_EQ(outer.count.value, 2);
    EXPECT_EQ(outer.share.value, 2.0);
}

TEST(JsonFields, errorInAnEarlierDuplicateIsForgotten)
{
    EXPECT_TRUE(read(R"({"id":1,"id":"b"})").isDecodable());
    EXPECT_TRUE(read(R"({"id":1,"id":null})").isDecodable());
    EXPECT_TRUE(read(R"({"count":"x","count":2})").isDecodable());
    EXPECT_TRUE(read(R"({"count":1e400,"count":null})").isDecodable());
    EXPECT_TRUE(read(R"({"share":{},"share":1})").isDecodable());
    EXPECT_TRUE(read(R"({"inner":[],"inner":{}})").isDecodable());
    EXPECT_TRUE(read(R"({"inner":{"count":"x"},"inner":{}})").isDecodable());
    EXPECT_TRUE(read(R"({"inner":{"count":"x","count":1}})").isDecodable());
    EXPECT_TRUE(read(R"({"inner":{"count":"x"},"inner":null})").isDecodable());
}

TEST(JsonFields, errorInTheLastDuplicateCounts)
{
    EXPECT_FALSE(read(R"({"id":"a","id":1})").isDecodable());
    EXPECT_FALSE(read(R"({"count":1,"count":"x"})").isDecodable());
    EXPECT_FALSE(read(R"({"count":1,"count":9223372036854775808})").isDecodable());
    EXPECT_FALSE(read(R"({"share":1,"share":1e400})").isDecodable());
    EXPECT_FALSE(read(R"({"inner":{},"inner":[]})").isDecodable());
    EXPECT_FALSE(read(R"({"inner":{"count":1},"inner":{"count":"x"}})").isDecodable());
    EXPECT_FALSE(read(R"({"inner":{"count":1,"count":"x"}})").isDecodable());
}

TEST(JsonFields, laterNullTakesAnEarlierValueAway)
{
    const Outer outer = read(R"({"id":"a","count":1,"inner":{"count":1},"id":null,"count":null,"inner":null})");
    EXPECT_TRUE(outer.isDecodable());
    EXPECT_EQ(outer.id.state, FieldState::absent);
    EXPECT_EQ(outer.count.valueOr(-1), -1);
    EXPECT_EQ(outer.inner.state, FieldState::absent);
}

TEST(JsonFields, duplicateObjectsAreNotMerged)
{
    const Outer outer = read(R"({"inner":{"count":1,"name":"a"},"inner":{"count":2}})");
    EXPECT_EQ(outer.inner.members.count.value, 2);
    EXPECT_EQ(outer.inner.members.name.state, FieldState::absent);
}

TEST(JsonFields, onlyAnObjectIsRead)
{
    for (const std::string_view text : {"", "null", "true", "1", R"("id")", "[]", R"([{"id":"a"}])", "}",
                                        R"({"id":"a"}{"id":"b"})", R"({"id":"a"},)", R"({"id":"a")"})
    {
        Outer outer;
        EXPECT_FALSE(readJsonObject(text, outer)) << text;
    }
}

TEST(JsonFields, errorAnywhereFailsTheWholeObject)
{
    for (const char* broken : {"01", "tru", "\"\t\"", "\"\\x\"", "[1,]", "{\"a\"}", "1e", "\xFF"}) {
        for (const std::string place : {"first", "id", "count", "share", "inner", "unknown"}) {
            Outer outer;
            const std::string text = R"({"a":1,")" + place + R"(":)" + broken + R"(,"z":1})";
            EXPECT_FALSE(readJsonObject(text, outer)) << text;
            const std::string nested = R"({"inner":{")" + place + R"(":)" + broken + R"(},"z":1})";
            EXPECT_FALSE(readJsonObject(nested, outer)) << nested;
        }
    }
}

} // namespace
} // namespace tallyfox::test
