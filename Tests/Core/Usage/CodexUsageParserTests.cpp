#include "Support/HistoryRecords.h"
#include "Support/Moments.h"
#include "TallyfoxCore/Usage/CodexUsageParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace tallyfox::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* lastUsage = "payload.info.last_token_usage";

std::vector<UsageSample> parseCodex(const std::vector<std::string>& lines)
{
    return CodexUsageParser::parse(HistoryLines(textOf(lines)));
}

std::string withUsage(const std::string& usage)
{
    return codexLine({{lastUsage, usage}});
}

TEST(CodexUsageParser, noLinesGiveNoSamples)
{
    EXPECT_THAT(parseCodex({}), IsEmpty());
}

TEST(CodexUsageParser, completeEventGivesItsSample)
{
    EXPECT_THAT(parseCodex({codexLine()}), ElementsAre(codexSample()));
}

TEST(CodexUsageParser, givenTotalWinsOverItsParts)
{
    EXPECT_THAT(totalsOf(parseCodex({withUsage(R"({"total_tokens": 500, "input_tokens": 100, "output_tokens": 50})")})),
                ElementsAre(500));
    EXPECT_THAT(totalsOf(parseCodex({withUsage(R"({"total_tokens": 0, "input_tokens": 100})")})), ElementsAre(0));
    EXPECT_THAT(totalsOf(parseCodex({withUsage(R"({"total_tokens": -7, "input_tokens": 100})")})), ElementsAre(-7));
}

TEST(CodexUsageParser, missingTotalIsInputAndOutput)
{
    const char* counts =
        R"("input_tokens": 100, "cached_input_tokens": 80, "output_tokens": 50, "reasoning_output_tokens": 20)";
    UsageSample expected = codexSample();
    expected.inputTokens = 100;
    expected.cachedInputTokens = 80;
    expected.outputTokens = 50;
    expected.reasoningTokens = 20;
    expected.totalTokens = 150;
    EXPECT_THAT(parseCodex({withUsage('{' + std::string(counts) + '}')}), ElementsAre(expected));
    EXPECT_THAT(parseCodex({withUsage('{' + std::string(counts) + R"(, "total_tokens": null})")}),
                ElementsAre(expected));
}

TEST(CodexUsageParser, emptyUsageIsASampleOfNothing)
{
    UsageSample expected = codexSample();
    expected.inputTokens = expected.cachedInputTokens = expected.outputTokens = expected.reasoningTokens = 0;
    expected.totalTokens = 0;
    EXPECT_THAT(parseCodex({withUsage("{}")}), ElementsAre(expected));
}

TEST(CodexUsageParser, identicalEventsAllCount)
{
    EXPECT_THAT(parseCodex({codexLine(), codexLine()}), ElementsAre(codexSample(), codexSample()));
}

TEST(CodexUsageParser, totalBelowZeroIsKept)
{
    EXPECT_THAT(totalsOf(parseCodex({withUsage(R"({"input_tokens": -3, "output_tokens": 1})")})), ElementsAre(-2));
}

TEST(CodexUsageParser, otherRecordAndPayloadTypesGiveNothing)
{
    for (const char* type : {R"("agent_message")", R"("Token_count")", R"("token_count ")", R"("")"})
        EXPECT_THAT(parseCodex({codexLine({{"payload.type", type}})}), IsEmpty()) << type;
    for (const char* type : {R"("response_item")", R"("Event_msg")", R"("event_msg ")", R"("token_count")"})
        EXPECT_THAT(parseCodex({codexLine({{"type", type}})}), IsEmpty()) << type;
    EXPECT_THAT(parseCodex({codexLine({{"type", R"("event\u005fmsg")"}, {"payload.type", R"("\u0074oken_count")"}})}),
                ElementsAre(codexSample()));
}

TEST(CodexUsageParser, eventWithoutARequiredMemberGivesNothing)
{
    for (const char* member : {"timestamp", "type", "payload", "payload.type", "payload.info", lastUsage}) {
        EXPECT_THAT(parseCodex({codexLine({{member, ""}})}), IsEmpty()) << member;
        EXPECT_THAT(parseCodex({codexLine({{member, "null"}})}), IsEmpty()) << member;
    }
}

TEST(CodexUsageParser, valueOfAWrongTypeFailsTheLine)
{
    for (const char* value : {"5", "true", "[]", "{}"}) {
        for (const char* member : {"timestamp", "type", "payload.type"})
            EXPECT_THAT(parseCodex({codexLine({{member, value}})}), IsEmpty()) << member << ": " << value;
    }
    for (const char* value : {"5", "false", "[]", R"("text")"}) {
        for (const char* member : {"payload", "payload.info", lastUsage})
            EXPECT_THAT(parseCodex({codexLine({{member, value}})}), IsEmpty()) << member << ": " << value;
    }
    for (const char* value : {R"("5")", "true", "[5]", "{}", "5.5", "-9223372036854775809", "1e400"}) {
        for (const char* name :
             {"input_tokens", "cached_input_tokens", "output_tokens", "reasoning_output_tokens", "total_tokens"})
            EXPECT_THAT(parseCodex({codexLine({{std::string(lastUsage) + '.' + name, value}})}), IsEmpty())
                << name << ": " << value;
    }
}

TEST(CodexUsageParser, absentAndNullCountsAreZero)
{
    for (const char* name : {"input_tokens", "cached_input_tokens", "output_tokens", "reasoning_output_tokens"}) {
        const std::string member = std::string(lastUsage) + '.' + name;
        EXPECT_EQ(parseCodex({codexLine({{member, ""}})}), parseCodex({codexLine({{member, "0"}})})) << name;
        EXPECT_EQ(parseCodex({codexLine({{member, "null"}})}), parseCodex({codexLine({{member, "0"}})})) << name;
        EXPECT_EQ(parseCodex({codexLine({{member, "0"}})}).size(), 1U) << name;
    }
}

TEST(CodexUsageParser, onlyTheLastUsageIsRead)
{
    const std::string info = R"({"total_token_usage":{"total_tokens":"x"},"model_context_window":1e400,)"
                             R"("last_token_usage":{"total_tokens":5},"rate_limits":[{"last_token_usage":7}]})";
    EXPECT_THAT(totalsOf(parseCodex({codexLine({{"payload.info", info}})})), ElementsAre(5));
    EXPECT_THAT(parseCodex({codexLine({{"payload.info", R"({"total_token_usage":{"total_tokens":5}})"}})}), IsEmpty());
}

TEST(CodexUsageParser, lastOfDuplicateMembersCounts)
{
    EXPECT_THAT(totalsOf(parseCodex({withUsage(R"({"total_tokens":5,"total_tokens":6})")})), ElementsAre(6));
    EXPECT_THAT(totalsOf(parseCodex({withUsage(R"({"total_tokens":"x","total_tokens":6})")})), ElementsAre(6));
    EXPECT_THAT(parseCodex({withUsage(R"({"total_tokens":5},"last_token_usage":null)")}), IsEmpty());
    EXPECT_THAT(totalsOf(parseCodex({withUsage(R"({"total_tokens":5},"last_token_usage":{"input_tokens":6})")})),
                ElementsAre(6));
    EXPECT_THAT(parseCodex({codexLine({{"payload.type", R"("other","type":"token_count")"}})}),
                ElementsAre(codexSample()));
}

TEST(CodexUsageParser, timestampDecidesWhetherTheEventCounts)
{
    EXPECT_THAT(parseCodex({codexLine({{"timestamp", R"("2026-11-21 09:41:07")"}})}), IsEmpty());
    EXPECT_THAT(parseCodex({codexLine({{"timestamp", R"("2026-11-21T10:41:07.000+0100")"}})}),
                ElementsAre(codexSample()));
    EXPECT_THAT(parseCodex({codexLine({{"timestamp", R"("2026-11-21T09:41:07\u005a")"}})}), ElementsAre(codexSample()));
}

TEST(CodexUsageParser, samplesKeepTheOrderOfTheLines)
{
    const auto at = [](const char* time, int total) {
        return codexLine({{"timestamp", std::string("\"2026-11-21T") + time + "Z\""},
                          {std::string(lastUsage) + ".total_tokens", std::to_string(total)}});
    };
    EXPECT_THAT(totalsOf(parseCodex({at("09:00:02", 1), "no JSON", at("09:00:01", 2), at("09:00:03", 3)})),
                ElementsAre(1, 2, 3));
}

TEST(CodexUsageParser, badBytesOutsideStringsFailOnlyTheirLine)
{
    EXPECT_THAT(parseCodex({"\xFF" + codexLine(), codexLine({{"id", ""}, {"payload.info", "{}\xFF"}}), codexLine()}),
                ElementsAre(codexSample()));
    const std::string noted = R"({"note":")" + std::string("\xFF\xC3") + R"(","last_token_usage":{"total_tokens":5}})";
    EXPECT_THAT(totalsOf(parseCodex({codexLine({{"payload.info", noted}})})), ElementsAre(5));
}

TEST(CodexUsageParserDeathTest, sumBeyond64BitsEndsTheProgramUnlessTheTotalIsGiven)
{
    const std::string largest = std::to_string(std::numeric_limits<std::int64_t>::max());
    const std::string counts = R"({"input_tokens": )" + largest + R"(, "output_tokens": 1)";
    EXPECT_EXIT(parseCodex({withUsage(counts + '}')}), testing::ExitedWithCode(EXIT_FAILURE), "64 bits");
    EXPECT_THAT(totalsOf(parseCodex({withUsage(counts + R"(, "total_tokens": 5})")})), ElementsAre(5));
}

} // namespace
} // namespace tallyfox::test
