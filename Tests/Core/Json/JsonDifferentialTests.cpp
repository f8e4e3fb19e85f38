#include "Support/JsonMutations.h"
#include "Support/JsonTexts.h"
#include "TallyfoxCore/Json/JsonReader.h"

#include <gtest/gtest.h>
#include <simdjson.h>

#include <array>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tallyfox::test {
namespace {

using simdjson::error_code;
using simdjson::dom::element_type;

bool isAccepted(std::string_view text)
{
    JsonReader reader(text);
    return reader.skipValue() && reader.finish();
}

/// The other reader. It holds the document of the text it parsed last.
class Simdjson {
public:
    Simdjson()
    {
        EXPECT_EQ(m_parser.allocate(0, 8192), simdjson::SUCCESS) << "nesting is not compared";
    }

    error_code parse(std::string_view text)
    {
        if (text.starts_with("\xEF\xBB\xBF"))
            return simdjson::TAPE_ERROR; // newer versions skip a byte order mark, which the grammar does not have
        m_text = simdjson::padded_string(text);
        return m_parser.parse(m_text).get(root);
    }

    simdjson::dom::element root;

private:
    simdjson::dom::parser m_parser;
    simdjson::padded_string m_text;
};

/// What the other reader refuses although the grammar allows it.
enum class Limit { number, surrogate, encoding };

struct RefusedByLimit {
    std::string_view text;
    Limit limit;
};

constexpr std::array refusedByLimit{
    RefusedByLimit{"18446744073709551616", Limit::number},
    RefusedByLimit{"-9223372036854775809", Limit::number},
    RefusedByLimit{"[123456789012345678901234567890]", Limit::number},
    RefusedByLimit{"1e400", Limit::number},
    RefusedByLimit{"[-1e400]", Limit::number},
    RefusedByLimit{R"("\ud800")", Limit::surrogate},
    RefusedByLimit{R"({"\ud83d":1})", Limit::surrogate},
    RefusedByLimit{R"("\ud83d\u0041")", Limit::surrogate},
    RefusedByLimit{"\"\xFF\"", Limit::encoding},
    RefusedByLimit{"{\"\xC3\":1}", Limit::encoding},
    RefusedByLimit{"\"\xED\xA0\x80\"", Limit::encoding},
};

/// The errors that stand for a limit, which differ from version to version.
std::map<error_code, Limit> limitsByError(Simdjson& simdjson)
{
    std::map<error_code, Limit> limits;
    for (const auto& [text, limit] : refusedByLimit)
        EXPECT_EQ(limits.try_emplace(simdjson.parse(text), limit).first->second, limit) << text;
    return limits;
}

void expectSameNumber(JsonReader& reader, const simdjson::dom::element& element)
{
    JsonNumber number;
    ASSERT_TRUE(reader.readNumber(number));
    if (element.type() == element_type::INT64) {
        EXPECT_EQ(number.toInteger(), element.get_int64().value_unsafe()) << number.raw;
    } else if (element.type() == element_type::UINT64) {
        EXPECT_EQ(number.toInteger(), std::nullopt) << number.raw;
    }
    EXPECT_EQ(number.toDouble(), element.get_double().value_unsafe()) << number.raw;
}

void expectSameString(const JsonString& string, std::string_view other)
{
    EXPECT_EQ(string.decoded(), other) << string.raw;
}

void expectSameMembers(JsonReader& reader, const simdjson::dom::object& object);

void expectSameValue(JsonReader& reader, const simdjson::dom::element& element)
{
    JsonString string;
    switch (element.type()) {
    case element_type::OBJECT:
        return expectSameMembers(reader, element.get_object().value_unsafe());
    case element_type::STRING:
        ASSERT_TRUE(reader.readString(string));
        return expectSameString(string, element.get_string().value_unsafe());
    case element_type::INT64:
    case element_type::UINT64:
    case element_type::DOUBLE:
        return expectSameNumber(reader, element);
    case element_type::NULL_VALUE:
        EXPECT_EQ(reader.nextType(), JsonReader::Type::null);
        EXPECT_TRUE(reader.skipValue());
        return;
    default:
        EXPECT_TRUE(reader.skipValue());
    }
}

void expectSameMembers(JsonReader& reader, const simdjson::dom::object& object)
{
    JsonString key;
    ASSERT_TRUE(reader.beginObject());
    for (const auto& [otherKey, value] : object) {
        ASSERT_TRUE(reader.nextMember(key));
        expectSameString(key, otherKey);
        expectSameValue(reader, value);
    }
    EXPECT_FALSE(reader.nextMember(key));
}

void expectSameContent(std::string_view text, const simdjson::dom::element& root)
{
    JsonReader reader(text);
    expectSameValue(reader, root);
    EXPECT_TRUE(reader.finish());
}

std::vector<std::string_view> seeds()
{
    std::vector<std::string_view> texts = legalJsonTexts();
    const std::vector<std::string_view> rich{
        richJsonText(),
        R"({"type":"assistant","timestamp":"2025-03-04T05:06:07.123Z","message":{"id":"m","model":"x","usage":)"
        R"({"input_tokens":10,"output_tokens":20.0,"cache_read_input_tokens":3e2}},"content":["\u00e9 \"q\""]})",
        R"({"timestamp":"2025-03-04T05:06:07Z","type":"event_msg","payload":{"type":"token_count","info":)"
        R"({"last_token_usage":{"input_tokens":1,"output_tokens":9223372036854775807}}}})",
        R"({"id":2,"result":{"rateLimits":{"primary":{"usedPercent":42.5,"resetsAt":1.7e9},"secondary":null}}})",
        "[[[[{\"a\":[1,2.5,-3e-3,\"\\ud83d\\ude00\"]}]],{}],\n[ true , false , null ]]"};
    for (int weight = 0; weight < 20; ++weight)
        texts.insert(texts.end(), rich.begin(), rich.end());
    return texts;
}

TEST(JsonDifferential, readersAgreeOnTheTablesExceptForTheListedLimits)
{
    Simdjson simdjson;
    for (const std::string_view text : legalJsonTexts())
        EXPECT_EQ(simdjson.parse(withoutReaderLimits(text)), simdjson::SUCCESS) << testing::PrintToString(text);
    for (const std::string_view text : refusedJsonTexts()) {
        EXPECT_NE(simdjson.parse(text), simdjson::SUCCESS) << testing::PrintToString(text);
        EXPECT_NE(simdjson.parse(withoutReaderLimits(text)), simdjson::SUCCESS) << testing::PrintToString(text);
    }
}

TEST(JsonDifferential, readersAgreeOnMutatedTextsExceptForTheListedLimits)
{
    Simdjson simdjson;
    JsonMutations mutations(seeds());
    const std::map<error_code, Limit> limits = limitsByError(simdjson);
    std::map<Limit, int> refusals;
    int accepted = 0;
    int refused = 0;
    for (int round = 0; round < 250'000; ++round) {
        const std::string text = mutations.next();
        const bool isOurs = isAccepted(text);
        ++(isOurs ? accepted : refused);
        ASSERT_EQ(simdjson.parse(withoutReaderLimits(text)) == simdjson::SUCCESS, isOurs)
            << testing::PrintToString(text);
        const error_code theirs = simdjson.parse(text);
        if (theirs == simdjson::SUCCESS) {
            ASSERT_TRUE(isOurs) << testing::PrintToString(text);
            expectSameContent(text, simdjson.root);
            ASSERT_FALSE(testing::Test::HasFailure()) << testing::PrintToString(text);
        } else if (isOurs) {
            ASSERT_TRUE(limits.contains(theirs)) << theirs << ": " << testing::PrintToString(text);
            ++refusals[limits.at(theirs)];
        }
    }
    EXPECT_GT(accepted, 40'000);
    EXPECT_GT(refused, 40'000);
    for (const Limit limit : {Limit::number, Limit::surrogate, Limit::encoding})
        EXPECT_GT(refusals[limit], 1'000) << static_cast<int>(limit);
}

TEST(JsonDifferential, listedLimitsAreOnlyTheOtherReaders)
{
    Simdjson simdjson;
    for (const auto& [text, limit] : refusedByLimit) {
        EXPECT_TRUE(isAccepted(text)) << testing::PrintToString(text);
        EXPECT_NE(simdjson.parse(text), simdjson::SUCCESS) << testing::PrintToString(text);
        EXPECT_EQ(simdjson.parse(withoutReaderLimits(text)), simdjson::SUCCESS) << testing::PrintToString(text);
    }
}

TEST(JsonDifferential, nestingBoundIsOnlyOurs)
{
    constexpr std::size_t bound = JsonReader::maximumDepth;
    Simdjson simdjson;
    for (const std::string& text : {nestedArrays(bound), nestedObjects(bound)}) {
        EXPECT_TRUE(isAccepted(text));
        EXPECT_EQ(simdjson.parse(text), simdjson::SUCCESS);
    }
    for (const std::string& text : {nestedArrays(bound + 1), nestedObjects(bound + 1)}) {
        EXPECT_FALSE(isAccepted(text));
        EXPECT_EQ(simdjson.parse(text), simdjson::SUCCESS);
    }
}

} // namespace
} // namespace tallyfox::test
