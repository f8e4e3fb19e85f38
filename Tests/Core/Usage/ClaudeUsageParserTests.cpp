#include "Support/HistoryRecords.h"
#include "Support/Moments.h"
#include "TallyfoxCore/Usage/ClaudeUsageParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace tallyfox::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr auto largest = std::numeric_limits<std::int64_t>::max();
constexpr auto smallest = std::numeric_limits<std::int64_t>::min();

std::vector<UsageSample> parse(const std::vector<std::string>& lines)
{
    return ClaudeUsageParser::parse(HistoryLines(textOf(lines)));
}

std::string usageMember(const std::string& name)
{
    return "message.usage." + name;
}

/// A record with one count.
std::string reading(const std::string& id, std::int64_t total, const std::string& timestamp = "2026-11-21T09:41:07Z",
                    const std::string& model = "fox-1")
{
    return claudeLine({{"timestamp", '"' + timestamp + '"'},
                       {"message.id", id},
                       {"message.model", '"' + model + '"'},
                       {"message.usage", "{\"output_tokens\":" + std::to_string(total) + '}'}});
}

std::string withoutId(std::int64_t total, const std::string& timestamp = "2026-11-21T09:41:07Z")
{
    return reading("", total, timestamp);
}

TEST(ClaudeUsageParser, noLinesGiveNoSamples)
{
    EXPECT_THAT(parse({}), IsEmpty());
    EXPECT_THAT(parse({"", ""}), IsEmpty());
}

TEST(ClaudeUsageParser, completeRecordGivesItsSample)
{
    EXPECT_THAT(parse({claudeLine()}), ElementsAre(claudeSample()));
}

TEST(ClaudeUsageParser, largestTotalOfAMessageCountsInEitherOrder)
{
    EXPECT_THAT(totalsOf(parse({reading(R"("m")", 100), reading(R"("m")", 250)})), ElementsAre(250));
    EXPECT_THAT(totalsOf(parse({reading(R"("m")", 250), reading(R"("m")", 100)})), ElementsAre(250));
    EXPECT_THAT(totalsOf(parse({reading(R"("m")", 1), reading(R"("m")", 3), reading(R"("m")", 2)})), ElementsAre(3));
}

TEST(ClaudeUsageParser, readingsOfMessagesInTurnStayApart)
{
    const std::string a = R"("a")";
    const std::string b = R"("b")";
    const std::string c = R"("c")";
    EXPECT_THAT(totalsOf(parse({reading(a, 10), reading(b, 20), reading(a, 30), reading(b, 40), reading(a, 50)})),
                UnorderedElementsAre(50, 40));
    EXPECT_THAT(totalsOf(parse({reading(a, 10), reading(b, 20), reading(a, 30), reading(c, 5), reading(a, 50)})),
                UnorderedElementsAre(50, 20, 5));
}

TEST(ClaudeUsageParser, earlierOfEqualReadingsIsKeptWhole)
{
    const auto samples = parse({reading(R"("m")", 100, "2026-11-21T09:41:07Z", "first"),
                                reading(R"("m")", 100, "2026-11-20T09:41:07Z", "second")});
    ASSERT_EQ(samples.size(), 1U);
    EXPECT_EQ(samples[0].timestamp, utcTime(2026, 11, 21, 9, 41, 7));
    EXPECT_EQ(samples[0].model, "first");
}

TEST(ClaudeUsageParser, largerReadingReplacesTheWholeSample)
{
    const auto samples = parse({reading(R"("m")", 100, "2026-11-21T09:41:07Z", "first"),
                                reading(R"("m")", 101, "2026-11-20T09:41:07Z", "second")});
    ASSERT_EQ(samples.size(), 1U);
    EXPECT_EQ(samples[0].timestamp, utcTime(2026, 11, 20, 9, 41, 7));
    EXPECT_EQ(samples[0].model, "second");
    EXPECT_EQ(samples[0].outputTokens, 101);
}

TEST(ClaudeUsageParser, messagesAreDistinguishedByTheirExactId)
{
    EXPECT_THAT(totalsOf(parse({reading(R"("m")", 1), reading(R"("M")", 2), reading(R"("m ")", 3), reading(R"("")", 4),
                                reading(R"("")", 5)})),
                UnorderedElementsAre(1, 2, 3, 5));
}

TEST(ClaudeUsageParser, emptyIdIsAnId)
{
    const auto samples = parse({reading(R"("")", 10), reading(R"("")", 30), reading(R"("")", 20)});
    EXPECT_THAT(totalsOf(samples), ElementsAre(30));
}

TEST(ClaudeUsageParser, idsAreComparedUnescaped)
{
    EXPECT_THAT(totalsOf(parse({reading(R"("m\u0031")", 1), reading(R"("m1")", 2), reading(R"("\u006d1")", 3)})),
                ElementsAre(3));
}

TEST(ClaudeUsageParser, firstReadingBelowZeroIsDropped)
{
    EXPECT_THAT(parse({reading(R"("m")", -1)}), IsEmpty());
    EXPECT_THAT(parse({withoutId(-1)}), IsEmpty());
    EXPECT_THAT(totalsOf(parse({reading(R"("m")", 0)})), ElementsAre(0));
    EXPECT_THAT(totalsOf(parse({reading(R"("m")", -5), reading(R"("m")", 0)})), ElementsAre(0));
    EXPECT_THAT(totalsOf(parse({reading(R"("m")", 5), reading(R"("m")", -6)})), ElementsAre(5));
}

TEST(ClaudeUsageParser, negativeCountIsKeptWhereTheTotalIsNot)
{
    const auto samples = parse({claudeLine({{usageMember("input_tokens"), "-1"}})});
    ASSERT_EQ(samples.size(), 1U);
    EXPECT_EQ(samples[0].inputTokens, -1);
    EXPECT_EQ(samples[0].totalTokens, 4319);
}

TEST(ClaudeUsageParser, recordsWithoutIdAreNeverMerged)
{
    EXPECT_THAT(totalsOf(parse({withoutId(7), withoutId(7), withoutId(8)})), UnorderedElementsAre(7, 7, 8));
    EXPECT_THAT(totalsOf(parse({reading("null", 7), reading("null", 7)})), ElementsAre(7, 7));
}

TEST(ClaudeUsageParser, idSpelledLikeTheKeyOfARecordWithoutIdSharesItsKey)
{
    const std::string id = R"("2026-11-21T09:41:07Z-1")";
    EXPECT_THAT(totalsOf(parse({reading(id, 5), withoutId(9)})), ElementsAre(9));
    EXPECT_THAT(totalsOf(parse({reading(id, 9), withoutId(5)})), ElementsAre(9));
    EXPECT_THAT(totalsOf(parse({"{}", withoutId(5), reading(id, 9)})), ElementsAre(9));
    EXPECT_THAT(totalsOf(parse({withoutId(5), reading(id, 9)})), UnorderedElementsAre(5, 9)) << "its key ends in -0";
}

TEST(ClaudeUsageParser, keyOfARecordWithoutIdCountsEveryLineThatIsNotEmpty)
{
    const std::string id = R"("2026-11-21T09:41:07Z-3")";
    EXPECT_THAT(totalsOf(parse({"no JSON", "", "{}", "", "\r\n", withoutId(5), reading(id, 9)})), ElementsAre(9));
}

TEST(ClaudeUsageParser, keyOfARecordWithoutIdHoldsTheTimestampAsItWasUnescaped)
{
    const std::string id = R"("2026-11-21T09:41:07Z-0")";
    EXPECT_THAT(totalsOf(parse({withoutId(5, R"(2026-11-21T09:41:07\u005A)"), reading(id, 9)})), ElementsAre(9));
    EXPECT_THAT(totalsOf(parse({withoutId(5, "2026-11-21T09:41:07.0Z"), reading(id, 9)})), UnorderedElementsAre(5, 9));
}

TEST(ClaudeUsageParser, absentCountsAreZero)
{
    UsageSample expected = claudeSample();
    expected.inputTokens = expected.cachedInputTokens = 0;
    expected.outputTokens = expected.totalTokens = 5;
    EXPECT_THAT(parse({claudeLine({{"message.usage", R"({"output_tokens": 5})"}})}), ElementsAre(expected));
    EXPECT_THAT(totalsOf(parse({claudeLine({{"message.usage", "{}"}})})), ElementsAre(0));
}

TEST(ClaudeUsageParser, cacheCreationCountsInTheTotalButNotAsCached)
{
    const auto samples = parse({claudeLine({{"message.usage", R"({"cache_creation_input_tokens": 1000})"}})});
    ASSERT_EQ(samples.size(), 1U);
    EXPECT_EQ(samples[0].cachedInputTokens, 0);
    EXPECT_EQ(samples[0].totalTokens, 1000);
}

TEST(ClaudeUsageParser, otherTypesGiveNothing)
{
    for (const char* type : {R"("user")", R"("Assistant")", R"("ASSISTANT")", R"("assistant ")", R"("")"})
        EXPECT_THAT(parse({claudeLine({{"type", type}})}), IsEmpty()) << type;
    EXPECT_THAT(parse({claudeLine({{"type", R"("\u0061ssistan\u0074")"}})}), ElementsAre(claudeSample()));
}

TEST(ClaudeUsageParser, recordWithoutARequiredMemberGivesNothing)
{
    for (const char* member : {"timestamp", "type", "message", "message.usage"}) {
        EXPECT_THAT(parse({claudeLine({{member, ""}})}), IsEmpty()) << member;
        EXPECT_THAT(parse({claudeLine({{member, "null"}})}), IsEmpty()) << member;
    }
}

TEST(ClaudeUsageParser, optionalMemberMayBeAbsentOrNull)
{
    for (const char* member :
         {"message.id", "message.model", "message.usage.input_tokens", "message.usage.output_tokens",
          "message.usage.cache_read_input_tokens", "message.usage.cache_creation_input_tokens"})
    {
        EXPECT_EQ(parse({claudeLine({{member, ""}})}).size(), 1U) << member;
        EXPECT_EQ(parse({claudeLine({{member, ""}})}), parse({claudeLine({{member, "null"}})})) << member;
    }
}

TEST(ClaudeUsageParser, valueOfAWrongTypeFailsTheLine)
{
    for (const char* value : {"5", "true", "[]", "{}"}) {
        for (const char* member : {"timestamp", "type", "message.id", "message.model"})
            EXPECT_THAT(parse({claudeLine({{member, value}})}), IsEmpty()) << member << ": " << value;
    }
    for (const char* value : {"5", "false", "[]", R"("text")"}) {
        for (const char* member : {"message", "message.usage"})
            EXPECT_THAT(parse({claudeLine({{member, value}})}), IsEmpty()) << member << ": " << value;
    }
    for (const char* value : {R"("5")", "true", "[5]", "{}", "5.5", "1e-1", "9223372036854775808", "1e400"}) {
        for (const char* name :
             {"input_tokens", "output_tokens", "cache_read_input_tokens", "cache_creation_input_tokens"})
            EXPECT_THAT(parse({claudeLine({{usageMember(name), value}})}), IsEmpty()) << name << ": " << value;
    }
}

TEST(ClaudeUsageParser, countsMayBeWrittenInEveryIntegralForm)
{
    for (const char* value : {"1000", "1000.0", "1e3", "10E+2", "100000e-2"})
        EXPECT_THAT(totalsOf(parse({claudeLine({{usageMember("input_tokens"), value}})})), ElementsAre(5320)) << value;
    const std::string extreme = "{\"input_tokens\":" + std::to_string(largest) + '}';
    EXPECT_THAT(totalsOf(parse({claudeLine({{"message.usage", extreme}})})), ElementsAre(largest));
}

TEST(ClaudeUsageParser, unknownMembersMayHoldAnyJson)
{
    const std::string usage = R"({"output_tokens":5,"service_tier":1e400,"more":{"usage":[{"input_tokens":"x"}]}})";
    EXPECT_THAT(totalsOf(parse({claudeLine({{"message.usage", usage}})})), ElementsAre(5));
    const std::string content = R"({"content":[{"text":"\ud83d \"usage\":{} \u0000"}],"usage":{"output_tokens":6}})";
    EXPECT_THAT(totalsOf(parse({claudeLine({{"message", content}})})), ElementsAre(6));
}

TEST(ClaudeUsageParser, lineOtherThanAJsonObjectGivesNothing)
{
    const std::string good = claudeLine();
    const std::vector<std::string> lines{
        '[' + good + ']', good + ',',   good + good,      good.substr(0, good.size() - 1),
        good.substr(1),   R"("usage")", "\x1B[1m" + good, good + '\0'};
    for (const std::string& line : lines)
        EXPECT_THAT(parse({line}), IsEmpty()) << line;
    EXPECT_THAT(parse({" \t" + good + " \t\r"}), ElementsAre(claudeSample()));
}

TEST(ClaudeUsageParser, carriageReturnBeforeTheLineFeedJoinsTwoRecordsIntoABadLine)
{
    const auto parseText = [](const std::string& text) { return ClaudeUsageParser::parse(HistoryLines(text)); };
    EXPECT_THAT(parseText(claudeLine() + "\r\n" + claudeLine() + "\r\n"), IsEmpty());
    EXPECT_THAT(parseText(claudeLine() + "\r\n\n" + reading(R"("n")", 1) + "\r\n").size(), 2U);
}

TEST(ClaudeUsageParser, lastOfDuplicateMembersCounts)
{
    const auto twice = [](const std::string& name, const std::string& one, const std::string& other) {
        return claudeLine({{"message.usage", "{\"" + name + "\":" + one + ",\"" + name + "\":" + other + '}'}});
    };
    EXPECT_THAT(totalsOf(parse({twice("output_tokens", "5", "6")})), ElementsAre(6));
    EXPECT_THAT(totalsOf(parse({twice("output_tokens", R"("x")", "6")})), ElementsAre(6));
    EXPECT_THAT(totalsOf(parse({twice("output_tokens", "5", "null")})), ElementsAre(0));
    EXPECT_THAT(parse({twice("output_tokens", "5", R"("x")")}), IsEmpty());
    EXPECT_THAT(parse({claudeLine({{"message.usage", R"({"output_tokens":5},"usage":null)"}})}), IsEmpty());
    EXPECT_THAT(totalsOf(parse({claudeLine({{"message.usage", R"({"output_tokens":5},"usage":{"input_tokens":6})"}})})),
                ElementsAre(6));
    EXPECT_THAT(parse({claudeLine({{"type", R"("user","type":"assistant")"}})}), ElementsAre(claudeSample()));
}

TEST(ClaudeUsageParser, duplicateMembersDoNotCarryOverToTheNextLine)
{
    const auto doubled = [](const std::string& id) {
        return claudeLine({{"message.id", id},
                           {"message.model", R"("fox","model":null)"},
                           {"message.usage", R"({"input_tokens":7,"output_tokens":5,"output_tokens":null})"}});
    };
    const auto samples = parse({doubled(R"("a")"), doubled(R"("b")"), doubled(R"("c")")});
    EXPECT_THAT(totalsOf(samples), ElementsAre(7, 7, 7));
    for (const UsageSample& sample : samples)
        EXPECT_EQ(sample.model, samples.front().model);
}

TEST(ClaudeUsageParser, timestampDecidesWhetherTheRecordCounts)
{
    const auto timesOf = [](const char* timestamp) { return parse({reading(R"("m")", 1, timestamp)}); };
    ASSERT_EQ(timesOf("2025-03-04T05:06:07.5Z").size(), 1U);
    EXPECT_EQ(timesOf("2025-03-04T05:06:07.5Z")[0].timestamp,
              utcTime(2025, 3, 4, 5, 6, 7) + std::chrono::milliseconds{500});
    for (const char* timestamp : {"2025-03-04 05:06:07", "2025-03-04", "", "2025-02-30T05:06:07Z"})
        EXPECT_THAT(timesOf(timestamp), IsEmpty()) << timestamp;
}

TEST(ClaudeUsageParser, modelIsDecoded)
{
    const auto modelOf = [](const std::string& json) {
        const auto samples = parse({claudeLine({{"message.model", json}})});
        return samples.size() == 1 ? samples[0].model : "no sample";
    };
    EXPECT_EQ(modelOf(""), std::nullopt);
    EXPECT_EQ(modelOf("null"), std::nullopt);
    EXPECT_EQ(modelOf(R"("")"), "");
    EXPECT_EQ(modelOf(R"("\u0066ox \"2\" \ud83e\udd8a")"), "fox \"2\" \xF0\x9F\xA6\x8A");
    EXPECT_EQ(modelOf(R"("fox\ud83e")"), "fox\xEF\xBF\xBD");
    EXPECT_EQ(modelOf("\"fox\xFF\xE2\x82\""), "fox\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(ClaudeUsageParser, idsThatDifferOnlyInBadBytesAreEqual)
{
    EXPECT_THAT(totalsOf(parse({reading("\"m\xFF\"", 1), reading("\"m\xFE\"", 2), reading(R"("m\ud800")", 3)})),
                ElementsAre(3));
}

TEST(ClaudeUsageParser, badByteOutsideAStringFailsOnlyItsLine)
{
    EXPECT_THAT(parse({"\xFF" + claudeLine({{"message.id", R"("a")"}}), claudeLine()}), ElementsAre(claudeSample()));
    EXPECT_THAT(parse({claudeLine(), claudeLine({{"message.id", R"("b")"}}) + "\xC3"}), ElementsAre(claudeSample()));
}

TEST(ClaudeUsageParser, samplesAscendByTime)
{
    const auto samples = parse({reading(R"("a")", 3, "2026-11-21T09:41:09Z"), withoutId(1, "2026-11-21T09:41:07Z"),
                                reading(R"("b")", 2, "2026-11-21T10:41:08+01:00")});
    EXPECT_THAT(totalsOf(samples), ElementsAre(1, 2, 3));
}

TEST(ClaudeUsageParserDeathTest, sumBeyond64BitsEndsTheProgram)
{
    const auto parseCounts = [](std::int64_t input, std::int64_t output, std::int64_t read, std::int64_t creation,
                                const char* timestamp = R"("2026-11-21T09:41:07Z")") {
        return parse({claudeLine({{"timestamp", timestamp},
                                  {usageMember("input_tokens"), std::to_string(input)},
                                  {usageMember("output_tokens"), std::to_string(output)},
                                  {usageMember("cache_read_input_tokens"), std::to_string(read)},
                                  {usageMember("cache_creation_input_tokens"), std::to_string(creation)}})});
    };
    const auto stopped = testing::ExitedWithCode(EXIT_FAILURE);
    EXPECT_EXIT(parseCounts(largest, 1, 0, 0), stopped, "64 bits");
    EXPECT_EXIT(parseCounts(largest, 1, -1, 0), stopped, "64 bits") << "added in this order";
    EXPECT_EXIT(parseCounts(0, 0, largest, 1), stopped, "64 bits");
    EXPECT_EXIT(parseCounts(smallest, -1, 0, 0), stopped, "64 bits");
    EXPECT_THAT(totalsOf(parseCounts(largest, -1, 1, 0)), ElementsAre(largest));
    EXPECT_THAT(parseCounts(largest, 1, 0, 0, R"("never")"), IsEmpty()) << "skipped before its counts are added";
}

} // namespace
} // namespace tallyfox::test
