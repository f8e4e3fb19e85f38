#include "Support/JsonTexts.h"
#include "Support/Moments.h"
#include "TallyfoxCore/Usage/CodexRateLimitParser.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tallyfox::test {
namespace {

using Decoded = std::variant<QuotaSnapshot, DecodingError>;

Decoded decode(std::string_view reply)
{
    return CodexRateLimitParser::decode(reply);
}

std::string replyWithLimits(std::string_view limits)
{
    return R"({"jsonrpc":"2.0","id":2,"result":{"rateLimits":{)" + std::string(limits) + "}}}";
}

/// A reply whose primary window has these members.
std::string replyWith(std::string_view members)
{
    return replyWithLimits(R"("primary":{)" + std::string(members) + "}");
}

QuotaWindow window(double usedPercent, std::optional<Instant> resetsAt = std::nullopt,
                   std::optional<std::int64_t> windowMinutes = std::nullopt)
{
    return {.usedPercent = usedPercent, .resetsAt = resetsAt, .windowMinutes = windowMinutes};
}

QuotaSnapshot snapshot(QuotaWindow primary, std::optional<QuotaWindow> secondary = std::nullopt)
{
    return {.provider = Provider::codex,
            .primary = primary,
            .secondary = secondary,
            .confidence = MeasurementConfidence::exact};
}

TEST(CodexRateLimitParser, percentAloneIsASnapshot)
{
    EXPECT_EQ(decode(replyWith(R"("usedPercent":42.5)")), Decoded{snapshot(window(42.5))});
}

TEST(CodexRateLimitParser, everyMemberOfBothWindowsIsRead)
{
    const std::string reply = replyWithLimits(
        R"("primary":{"usedPercent":42.5,"windowDurationMins":300,"resetsAt":1700000000},)"
        R"("secondary":{"resetsAt":1700000000.25,"usedPercent":7,"windowDurationMins":10080},"planType":"plus")");
    const Instant reset = utcTime(2023, 11, 14, 22, 13, 20);
    EXPECT_EQ(decode(reply),
              Decoded{snapshot(window(42.5, reset, 300), window(7, reset + std::chrono::milliseconds{250}, 10080))});
}

TEST(CodexRateLimitParser, percentIsKeptAsReported)
{
    const std::vector<std::pair<std::string, double>> table{{"42", 42.0},
                                                            {"0", 0.0},
                                                            {"-0.5", -0.5},
                                                            {"100", 100.0},
                                                            {"100.000001", 100.000001},
                                                            {"250.75", 250.75},
                                                            {"-30", -30},
                                                            {"4.25e1", 42.5},
                                                            {"1e300", 1e300},
                                                            {"1e-400", 0.0},
                                                            {"0.1", 0.1},
                                                            {"33.333333333333336", 33.333333333333336}};
    for (const auto& [text, percent] : table)
        EXPECT_EQ(decode(replyWith(R"("usedPercent":)" + text)), Decoded{snapshot(window(percent))}) << text;
}

TEST(CodexRateLimitParser, nullIsAbsentWhereAMemberIsOptional)
{
    EXPECT_EQ(decode(replyWithLimits(
                  R"("primary":{"usedPercent":1,"windowDurationMins":null,"resetsAt":null},"secondary":null)")),
              Decoded{snapshot(window(1))});
}

TEST(CodexRateLimitParser, resetTimeBeyondTheCalendarSaturates)
{
    const std::vector<std::pair<std::string, Instant>> table{
        {"0", Instant{}},
        {"-1.5", Instant{std::chrono::milliseconds{-1500}}},
        {"253402300800", distantFuture},
        {"1e12", distantFuture},
        {"1e300", distantFuture},
        {"9223372036854775808", distantFuture},
        {"-62135596800", distantPast},
        {"-62135596801", distantPast},
        {"-1e300", distantPast},
        {"253402300799", distantFuture - std::chrono::microseconds{999'999}},
        {"1e-400", Instant{}}};
    for (const auto& [text, instant] : table) {
        EXPECT_EQ(decode(replyWith(R"("usedPercent":1,"resetsAt":)" + text)), (Decoded{snapshot(window(1, instant))}))
            << text;
    }
}

TEST(CodexRateLimitParser, windowLengthIsAnyInteger)
{
    const std::vector<std::pair<std::string, std::int64_t>> table{
        {"300", 300}, {"300.0", 300}, {"3e2", 300}, {"0", 0}, {"-5", -5}, {"9223372036854775807", INT64_MAX}};
    for (const auto& [text, minutes] : table) {
        EXPECT_EQ(decode(replyWith(R"("usedPercent":1,"windowDurationMins":)" + text)),
                  (Decoded{snapshot(window(1, std::nullopt, minutes))}))
            << text;
    }
}

TEST(CodexRateLimitParser, wrongTypeIsAnErrorAtEveryMember)
{
    const std::string good = R"({"usedPercent":1})";
    for (const std::string value : {"\"42\"", "true", "false", "[]", "[1]", "{}", "1", "1e400"}) {
        const bool isNumber = value == "1";
        const bool isObject = value == "{}";
        if (!isNumber) {
            EXPECT_EQ(decode(replyWith(R"("usedPercent":)" + value)), Decoded{DecodingError::wrongType}) << value;
            EXPECT_EQ(decode(replyWith(R"("usedPercent":1,"resetsAt":)" + value)), Decoded{DecodingError::wrongType})
                << value;
            EXPECT_EQ(decode(replyWith(R"("usedPercent":1,"windowDurationMins":)" + value)),
                      Decoded{DecodingError::wrongType})
                << value;
            EXPECT_EQ(decode(replyWithLimits(R"("primary":)" + good + R"(,"secondary":{"usedPercent":)" + value + "}")),
                      Decoded{DecodingError::wrongType})
                << value;
        }
        const DecodingError error = isObject ? DecodingError::missingKey : DecodingError::wrongType;
        EXPECT_EQ(decode(R"({"result":)" + value + "}"), Decoded{error}) << value;
        EXPECT_EQ(decode(R"({"result":{"rateLimits":)" + value + "}}"), Decoded{error}) << value;
        EXPECT_EQ(decode(replyWithLimits(R"("primary":)" + value)), Decoded{error}) << value;
        EXPECT_EQ(decode(replyWithLimits(R"("primary":)" + good + R"(,"secondary":)" + value)), Decoded{error})
            << value;
    }
}

TEST(CodexRateLimitParser, fractionalWindowLengthIsAnError)
{
    for (const char* text : {"0.5", "300.5", "9223372036854775808", "-9223372036854775809", "1e19"})
        EXPECT_EQ(decode(replyWith(R"("usedPercent":1,"windowDurationMins":)" + std::string(text))),
                  Decoded{DecodingError::wrongType})
            << text;
}

TEST(CodexRateLimitParser, missingOrNullRequiredMemberIsAnError)
{
    for (const char* reply :
         {"{}", R"({"id":2})", R"({"result":null})", R"({"result":{}})", R"({"result":{"rateLimits":null}})",
          R"({"result":{"rateLimits":{}}})", R"({"result":{"rateLimits":{"primary":null}}})",
          R"({"result":{"rateLimits":{"primary":{}}}})",
          R"({"result":{"rateLimits":{"primary":{"usedPercent":null}}}})",
          R"({"result":{"rateLimits":{"secondary":{"usedPercent":1}}}})",
          R"({"result":{"rateLimits":{"primary":{"usedPercent":1},"secondary":{}}}})",
          R"({"result":{"rateLimits":{"primary":{"usedPercent":1},"secondary":{"resetsAt":1}}}})",
          R"({"result":{"ratelimits":{"primary":{"usedPercent":1}}}})",
          R"({"result":{"rateLimits":{"primary":{"used_percent":1}}}})",
          R"({"rateLimits":{"primary":{"usedPercent":1}}})", R"({"primary":{"usedPercent":1}})"})
        EXPECT_EQ(decode(reply), Decoded{DecodingError::missingKey}) << reply;
}

TEST(CodexRateLimitParser, errorReplyIsAnError)
{
    EXPECT_EQ(decode(R"({"jsonrpc":"2.0","id":2,"error":{"code":-32601,"message":"Method not found"}})"),
              Decoded{DecodingError::missingKey});
    EXPECT_EQ(decode(R"({"id":2,"result":null,"error":{"code":401,"message":"result"}})"),
              Decoded{DecodingError::missingKey});
}

TEST(CodexRateLimitParser, invalidJsonIsMalformed)
{
    using namespace std::string_view_literals;
    for (const std::string_view reply :
         {""sv, " "sv, "\n"sv, "{"sv, "result"sv, "{}{}"sv, "{\"result\":}"sv, "\0"sv, "{}\0"sv, "\xEF\xBB\xBF{}"sv,
          "{\"a\":\"\xFF\"}"sv, "{\"a\":\"\xED\xA0\x80\"}"sv, "\"\xFF\""sv, "[\"\xC3\"]"sv, "{'result':1}"sv})
        EXPECT_EQ(decode(reply), Decoded{DecodingError::malformed}) << testing::PrintToString(reply);
    for (const std::string_view text : refusedJsonTexts())
        EXPECT_EQ(decode(text), Decoded{DecodingError::malformed}) << testing::PrintToString(text);
}

TEST(CodexRateLimitParser, valueOtherThanAnObjectHasTheWrongType)
{
    for (const char* reply : {"null", "true", "2", R"("result")", "[]", R"([{"result":{}}])", " [1] "})
        EXPECT_EQ(decode(reply), Decoded{DecodingError::wrongType}) << reply;
}

TEST(CodexRateLimitParser, replyTruncatedAnywhereIsMalformed)
{
    const std::string reply =
        replyWithLimits(R"("primary":{"usedPercent":42.5,"windowDurationMins":300,"resetsAt":1700000000},)"
                        R"("secondary":{"usedPercent":7},"name":"\u00e9 \ud83d\ude00")");
    ASSERT_TRUE(std::holds_alternative<QuotaSnapshot>(decode(reply)));
    for (std::size_t size = 0; size < reply.size(); ++size)
        EXPECT_EQ(decode(std::string_view(reply).substr(0, size)), Decoded{DecodingError::malformed}) << size;
}

TEST(CodexRateLimitParser, lastOfDuplicateMembersCounts)
{
    const Decoded two{snapshot(window(2))};
    EXPECT_EQ(decode(replyWith(R"("usedPercent":1,"usedPercent":2)")), two);
    EXPECT_EQ(decode(replyWith(R"("usedPercent":"x","usedPercent":2)")), two);
    EXPECT_EQ(decode(replyWith(R"("usedPercent":2,"resetsAt":5,"resetsAt":null)")), two);
    EXPECT_EQ(decode(replyWithLimits(R"("primary":{"usedPercent":1,"resetsAt":5},"primary":{"usedPercent":2})")), two);
    EXPECT_EQ(decode(replyWithLimits(R"("primary":[],"primary":{"usedPercent":2})")), two);
    EXPECT_EQ(decode(replyWithLimits(R"("primary":{"usedPercent":2},"secondary":{"usedPercent":9},"secondary":null)")),
              two);
    EXPECT_EQ(decode(R"({"result":{"rateLimits":1},"result":{"rateLimits":null,"rateLimits":)"
                     R"({"primary":{"usedPercent":2}}}})"),
              two);
    EXPECT_EQ(decode(replyWith(R"("usedPercent":2,"usedPercent":"x")")), Decoded{DecodingError::wrongType});
    EXPECT_EQ(decode(replyWith(R"("usedPercent":2,"usedPercent":null)")), Decoded{DecodingError::missingKey});
    EXPECT_EQ(decode(replyWithLimits(R"("primary":{"usedPercent":2},"primary":{})")),
              Decoded{DecodingError::missingKey});
    EXPECT_EQ(decode(R"({"result":{"rateLimits":{"primary":{"usedPercent":2}}},"result":{}})"),
              Decoded{DecodingError::missingKey});
}

TEST(CodexRateLimitParser, escapedKeysAreTheSameKeys)
{
    EXPECT_EQ(decode(R"({"re\u0073ult":{"\u0072ateLimits":{"primar\u0079":{"used\u0050ercent":2}}}})"),
              Decoded{snapshot(window(2))});
}

TEST(CodexRateLimitParser, unknownMembersMayHoldAnythingLegal)
{
    for (const std::string value : {"1e400", "123456789012345678901234567890", R"("\ud800")", "[[[{}]]]", "null",
                                    R"({"usedPercent":"x","primary":1,"result":[]})"})
    {
        const std::string other = R"("other":)" + value;
        EXPECT_EQ(decode("{" + other + R"(,"result":{)" + other + R"(,"rateLimits":{)" + other + R"(,"primary":{)"
                         + other + R"(,"usedPercent":2,)" + other + "}}}," + other + "}"),
                  Decoded{snapshot(window(2))})
            << value;
    }
}

TEST(CodexRateLimitParser, replyIsRecognisedByItsIdInAnySpelling)
{
    for (const char* line :
         {R"({"id":2})", R"({"id":2.0})", R"({"id":2e0})", R"({"id":20e-1})", R"({"id":0.2E1})", R"( { "id" : 2 } )",
          R"({"jsonrpc":"2.0","id":2,"result":{}})", R"({"result":{"id":1},"id":2,"error":null})", R"({"\u0069d":2})",
          R"({"id":1,"id":2})", R"({"id":"2","id":2})", R"({"id":null,"id":2})", R"({"id":2,"other":1e400})",
          "{\"id\":2,\"other\":\"\xFF\"}", "{\"id\":2}\r"})
        EXPECT_TRUE(CodexRateLimitParser::isReply(line, 2)) << line;
    EXPECT_TRUE(CodexRateLimitParser::isReply(R"({"id":-9223372036854775808})", INT64_MIN));
    EXPECT_TRUE(CodexRateLimitParser::isReply(R"({"id":-0})", 0));
}

TEST(CodexRateLimitParser, otherLinesAreNotReplies)
{
    for (const char* line : {"",
                             "{}",
                             "2",
                             "[2]",
                             "null",
                             R"({"id":1})",
                             R"({"id":-2})",
                             R"({"id":"2"})",
                             R"({"id":null})",
                             R"({"id":[2]})",
                             R"({"id":{"id":2}})",
                             R"({"id":true})",
                             R"({"id":2.5})",
                             R"({"id":2e1})",
                             R"({"id":02})",
                             R"({"ID":2})",
                             R"({"id ":2})",
                             R"({"result":{"id":2}})",
                             R"([{"id":2}])",
                             R"({"id":2,"id":1})",
                             R"({"id":2,"id":"2"})",
                             R"({"id":2,"id":null})",
                             R"({"method":"account/updated","params":{"id":2}})",
                             R"({"id":2)",
                             R"({"id":2}})",
                             R"({"id":2}{"id":2})",
                             R"({"id":2,})",
                             R"({"id":2,"a":01})",
                             R"(x{"id":2})",
                             R"({"id":18446744073709551618})",
                             R"({"id":4294967298})",
                             R"({"id":2e99999999999999999999})"})
        EXPECT_FALSE(CodexRateLimitParser::isReply(line, 2)) << line;
    EXPECT_FALSE(CodexRateLimitParser::isReply("{}", 0));
    EXPECT_FALSE(CodexRateLimitParser::isReply(R"({"id":null})", 0));
    EXPECT_FALSE(CodexRateLimitParser::isReply(R"({"id":"x"})", 0));
}

TEST(CodexRateLimitParser, lineTruncatedAnywhereIsNotAReply)
{
    const std::string reply = replyWith(R"("usedPercent":42.5)");
    ASSERT_TRUE(CodexRateLimitParser::isReply(reply, 2));
    for (std::size_t size = 0; size < reply.size(); ++size)
        EXPECT_FALSE(CodexRateLimitParser::isReply(std::string_view(reply).substr(0, size), 2)) << size;
}

} // namespace
} // namespace tallyfox::test
