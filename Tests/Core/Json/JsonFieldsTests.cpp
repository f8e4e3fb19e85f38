#include "TallyfoxCore/Json/JsonFields.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <tuple>

namespace tallyfox::test {
namespace {

struct Inner {
    IntegerField count;
    StringField name;

    static constexpr auto members()
    {
        return std::tuple{optionalMember("count", &Inner::count), requiredMember("name", &Inner::name)};
    }
};

/// A record with a field of each kind, as histories have them.
struct Outer {
    StringField id;
    IntegerField count;
    DoubleField share;
    ObjectField<Inner> inner;

    static constexpr auto members()
    {
        return std::tuple{requiredMember("id", &Outer::id), optionalMember("count", &Outer::count),
                          optionalMember("share", &Outer::share), optionalMember("inner", &Outer::inner)};
    }
};

/// The record of `text`, which must be a grammatical object.
Outer read(std::string_view text)
{
    Outer outer;
    EXPECT_TRUE(readJsonObject(text, outer)) << text;
    return outer;
}

TEST(JsonFields, wantedMembersAreReadAmongOthers)
{
    const Outer outer = read(R"({"x":[1],"share":0.5,"id":"a","y":{"id":"no"},"count":5.0,"inner":{"count":7}})");
    EXPECT_TRUE(hasRightTypes(outer));
    EXPECT_EQ(outer.id.value.raw, "a");
    EXPECT_EQ(outer.count.valueOr(-1), 5);
    EXPECT_EQ(outer.share.valueOr(-1), 0.5);
    ASSERT_TRUE(outer.inner.isPresent());
    EXPECT_EQ(outer.inner.record.count.valueOr(-1), 7);
    EXPECT_EQ(outer.inner.record.name.state, FieldState::absent);
}

TEST(JsonFields, membersOfTheSameNameElsewhereDoNotCount)
{
    const Outer outer = read(R"({"other":{"id":"no","count":"no"},"list":[{"id":1}],"inner":{"id":3,"share":"no"}})");
    EXPECT_TRUE(hasRightTypes(outer));
    EXPECT_EQ(outer.id.state, FieldState::absent);
    EXPECT_EQ(outer.count.state, FieldState::absent);
    EXPECT_EQ(outer.share.state, FieldState::absent);
}

TEST(JsonFields, escapedKeyIsTheSameKey)
{
    const Outer outer = read(R"({"\u0069\u0064":"a","c\u006Funt":2,"inn\u0065r":{"n\u0061me":"b"},"\\u0069d":3})");
    EXPECT_TRUE(hasRightTypes(outer));
    EXPECT_EQ(outer.id.value.raw, "a");
    EXPECT_EQ(outer.count.valueOr(-1), 2);
    EXPECT_EQ(outer.inner.record.name.value.raw, "b");
}

TEST(JsonFields, nullIsAbsent)
{
    const Outer outer = read(R"({"id":null,"count":null,"share":null,"inner":null})");
    EXPECT_TRUE(hasRightTypes(outer));
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
        EXPECT_EQ(hasRightTypes(read(R"({"id":)" + value + "}")), isString) << value;
        EXPECT_EQ(hasRightTypes(read(R"({"count":)" + value + "}")), isNumber && value != "1.5") << value;
        EXPECT_EQ(hasRightTypes(read(R"({"share":)" + value + "}")), isNumber) << value;
        EXPECT_EQ(hasRightTypes(read(R"({"inner":)" + value + "}")), isObject) << value;
        EXPECT_EQ(hasRightTypes(read(R"({"inner":{"count":)" + value + "}}")), isNumber && value != "1.5") << value;
        EXPECT_TRUE(hasRightTypes(read(R"({"unknown":)" + value + "}"))) << value;
    }
}

TEST(JsonFields, numberThatDoesNotFitItsTypeIsWrong)
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
        EXPECT_TRUE(hasRightTypes(outer)) << value.substr(0, 80);
        EXPECT_EQ(outer.id.value.raw, "a");
        EXPECT_EQ(outer.count.valueOr(-1), 1);
    }
}

TEST(JsonFields, lastOfDuplicateMembersCounts)
{
    const Outer outer = read(R"({"id":"a","count":1,"share":1,"id":"b","count":2,"share":2,"\u0069d":"c"})");
    EXPECT_TRUE(hasRightTypes(outer));
    EXPECT_EQ(outer.id.value.raw, "c");
    EXPECT_EQ(outer.count.value, 2);
    EXPECT_EQ(outer.share.value, 2.0);
}

TEST(JsonFields, errorInAnEarlierDuplicateIsIgnored)
{
    EXPECT_TRUE(hasRightTypes(read(R"({"id":1,"id":"b"})")));
    EXPECT_TRUE(hasRightTypes(read(R"({"id":1,"id":null})")));
    EXPECT_TRUE(hasRightTypes(read(R"({"count":"x","count":2})")));
    EXPECT_TRUE(hasRightTypes(read(R"({"count":1e400,"count":null})")));
    EXPECT_TRUE(hasRightTypes(read(R"({"share":{},"share":1})")));
    EXPECT_TRUE(hasRightTypes(read(R"({"inner":[],"inner":{}})")));
    EXPECT_TRUE(hasRightTypes(read(R"({"inner":{"count":"x"},"inner":{}})")));
    EXPECT_TRUE(hasRightTypes(read(R"({"inner":{"count":"x","count":1}})")));
    EXPECT_TRUE(hasRightTypes(read(R"({"inner":{"count":"x"},"inner":null})")));
}

TEST(JsonFields, errorInTheLastDuplicateCounts)
{
    EXPECT_FALSE(hasRightTypes(read(R"({"id":"a","id":1})")));
    EXPECT_FALSE(hasRightTypes(read(R"({"count":1,"count":"x"})")));
    EXPECT_FALSE(hasRightTypes(read(R"({"count":1,"count":9223372036854775808})")));
    EXPECT_FALSE(hasRightTypes(read(R"({"share":1,"share":1e400})")));
    EXPECT_FALSE(hasRightTypes(read(R"({"inner":{},"inner":[]})")));
    EXPECT_FALSE(hasRightTypes(read(R"({"inner":{"count":1},"inner":{"count":"x"}})")));
    EXPECT_FALSE(hasRightTypes(read(R"({"inner":{"count":1,"count":"x"}})")));
}

TEST(JsonFields, laterNullRemovesAnEarlierValue)
{
    const Outer outer = read(R"({"id":"a","count":1,"inner":{"count":1},"id":null,"count":null,"inner":null})");
    EXPECT_TRUE(hasRightTypes(outer));
    EXPECT_EQ(outer.id.state, FieldState::absent);
    EXPECT_EQ(outer.count.valueOr(-1), -1);
    EXPECT_EQ(outer.inner.state, FieldState::absent);
}

TEST(JsonFields, duplicateObjectsAreNotMerged)
{
    const Outer outer = read(R"({"inner":{"count":1,"name":"a"},"inner":{"count":2}})");
    EXPECT_EQ(outer.inner.record.count.value, 2);
    EXPECT_EQ(outer.inner.record.name.state, FieldState::absent);
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

TEST(JsonFields, recordWithoutARequiredMemberIsIncomplete)
{
    EXPECT_TRUE(isComplete(read(R"({"id":"a"})")));
    EXPECT_FALSE(isComplete(read("{}")));
    EXPECT_FALSE(isComplete(read(R"({"id":null,"count":1})")));
    EXPECT_FALSE(isComplete(read(R"({"id":"a","id":null})")));
    EXPECT_FALSE(isComplete(read(R"({"id":1})")));
}

TEST(JsonFields, recordInARecordMustBeCompleteOnlyWhereItIsPresent)
{
    EXPECT_TRUE(isComplete(read(R"({"id":"a","inner":null})")));
    EXPECT_TRUE(isComplete(read(R"({"id":"a","inner":{"name":"b"}})")));
    EXPECT_FALSE(isComplete(read(R"({"id":"a","inner":{}})")));
    EXPECT_FALSE(isComplete(read(R"({"id":"a","inner":{"count":1}})")));
}

} // namespace
} // namespace tallyfox::test
