#include "Support/HeapWatch.h"
#include "Support/JsonTexts.h"
#include "TallyfoxCore/Json/JsonFields.h"
#include "TallyfoxCore/Usage/ClaudeUsageParser.h"
#include "TallyfoxCore/Usage/CodexRateLimitParser.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

namespace tallyfox::test {
namespace {

constexpr std::size_t mebibyte = 1024 * 1024;

struct Envelope {
    StringField type;
    IntegerField id;
    DoubleField share;

    static constexpr auto members()
    {
        return std::tuple{optionalMember("type", &Envelope::type), optionalMember("id", &Envelope::id),
                          optionalMember("share", &Envelope::share)};
    }
};

/// A message of a mebibyte, with every kind of character that could tempt a reader to make a copy.
std::string largeContent()
{
    std::string text = R"([{"type":"text","text":")";
    while (text.size() < mebibyte)
        text += "some words \\n \\\"quoted\\\" \\u00e9 \\ud83d\\ude00 \\ud800 \xC3\xA9 \xFF ";
    return text + R"("}])";
}

std::string largeLine()
{
    return R"({"content":)" + largeContent() + R"(,"\u0074ype":"assistant","id":12e1,"share":0.25})";
}

TEST(HeapWatch, allocationsAreCounted)
{
    const HeapWatch count;
    EXPECT_EQ(count.blocks(), 0U);
    const auto text = std::make_unique<std::string>(1000, 'x');
    EXPECT_EQ(count.blocks(), 2U);
    EXPECT_GE(count.bytes(), 1000U + sizeof(std::string));
}

TEST(JsonAllocation, readingALineDoesNotAllocate)
{
    const std::string line = largeLine();
    Envelope envelope;
    const HeapWatch count;
    const bool isRead = readJsonObject(line, envelope);
    const bool isAssistant = envelope.type.value.equals("assistant");
    const std::size_t blocks = count.blocks();
    ASSERT_TRUE(isRead && isAssistant);
    EXPECT_EQ(envelope.id.value, 120);
    EXPECT_EQ(envelope.share.value, 0.25);
    EXPECT_EQ(blocks, 0U);
}

TEST(JsonAllocation, refusingALineDoesNotAllocate)
{
    const std::string line = largeLine();
    const std::string nested = nestedArrays(100'000);
    Envelope envelope;
    const HeapWatch count;
    const bool isRead = readJsonObject(std::string_view(line).substr(0, line.size() - 1), envelope);
    JsonReader reader(nested);
    const bool isSkipped = reader.skipValue();
    const std::size_t blocks = count.blocks();
    EXPECT_FALSE(isRead);
    EXPECT_FALSE(isSkipped);
    EXPECT_EQ(blocks, 0U);
}

TEST(JsonAllocation, deepestNestingDoesNotAllocate)
{
    const std::string arrays = nestedArrays(JsonReader::maximumDepth);
    const std::string objects = nestedObjects(JsonReader::maximumDepth);
    const HeapWatch count;
    JsonReader arrayReader(arrays);
    JsonReader objectReader(objects);
    const bool areSkipped = arrayReader.skipValue() && objectReader.skipValue();
    const std::size_t blocks = count.blocks();
    EXPECT_TRUE(areSkipped);
    EXPECT_EQ(blocks, 0U);
}

TEST(JsonAllocation, plainStringIsDecodedInPlace)
{
    JsonReader reader(R"("a plain model name of more than a few letters")");
    JsonString string;
    ASSERT_TRUE(reader.readString(string));
    std::string storage;
    const HeapWatch count;
    const std::string_view text = string.decoded(storage);
    const std::size_t blocks = count.blocks();
    EXPECT_EQ(text.data(), string.raw.data());
    EXPECT_EQ(blocks, 0U);
}

TEST(JsonAllocation, rateLimitReplyDoesNotAllocate)
{
    const std::string reply =
        R"({"id":2,"other":"a text \u00e9 longer than any small string","result":{"rateLimits":{"primary":)"
        R"({"usedPercent":42.5,"windowDurationMins":300.0,"resetsAt":1.7e9},"secondary":{"usedPercent":7}}}})";
    const HeapWatch count;
    const bool isReply = CodexRateLimitParser::isReply(reply, 2);
    const auto decoded = CodexRateLimitParser::decode(reply);
    const std::size_t blocks = count.blocks();
    EXPECT_TRUE(isReply);
    EXPECT_TRUE(std::holds_alternative<QuotaSnapshot>(decoded));
    EXPECT_EQ(blocks, 0U);
}

TEST(JsonAllocation, usageRecordIsReadWithoutItsMessageText)
{
    const std::string line = R"({"type":"assistant","timestamp":"2025-03-04T05:06:07Z","message":{"content":)"
        + largeContent() + R"(,"id":"message","model":"m","usage":{"output_tokens":5}}})";
    const HeapWatch count;
    const auto samples = ClaudeUsageParser::parse(HistoryLines(line));
    const std::size_t bytes = count.bytes();
    ASSERT_EQ(samples.size(), 1U);
    EXPECT_EQ(samples.front().totalTokens, 5);
    EXPECT_LT(bytes, 8192U) << "the parser itself takes five kibibytes";
}

} // namespace
} // namespace tallyfox::test
