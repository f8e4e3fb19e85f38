#include "Support/GeneratedHistory.h"
#include "Support/GuardedText.h"
#include "Support/HistoryRecords.h"
#include "TallyfoxCore/Usage/ClaudeUsageParser.h"
#include "TallyfoxCore/Usage/CodexUsageParser.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

/// Lines are skipped unread where their bytes prove that they hold no usage. These tests read the same texts with and
/// without that shortcut.
namespace tallyfox::test {
namespace {

std::vector<UsageSample> parse(Provider provider, const HistoryLines& lines, LineSelection selection)
{
    return provider == Provider::claude ? ClaudeUsageParser::parse(lines, selection)
                                        : CodexUsageParser::parse(lines, selection);
}

std::size_t mentioningLines(Provider provider, const HistoryLines& lines)
{
    std::size_t count = 0;
    forEachLine(lines, LineSelection::mentioning, provider == Provider::claude ? "usage" : "last_token_usage",
                [&count](std::string_view) { ++count; });
    return count;
}

class LineSelectionOfGeneratedTexts : public testing::TestWithParam<std::tuple<Provider, std::uint64_t>> { };

TEST_P(LineSelectionOfGeneratedTexts, mentioningLinesGiveTheSamplesOfAllLines)
{
    constexpr std::size_t texts = 15'000;
    const auto [provider, seed] = GetParam();
    GeneratedHistory history(provider, seed);
    GuardedText room(64 * 1024);
    std::size_t samples = 0;
    std::size_t skipped = 0;
    for (std::size_t count = 0; count < texts; ++count) {
        const std::string copy = history.text();
        const HistoryLines lines(room.atEnd(copy));
        const auto expected = parse(provider, lines, LineSelection::all);
        ASSERT_EQ(parse(provider, lines, LineSelection::mentioning), expected) << copy;
        samples += expected.size();
        skipped += linesOf(lines).size() - mentioningLines(provider, lines);
    }
    EXPECT_GT(samples, texts / 3) << "the texts would prove nothing";
    EXPECT_GT(skipped, texts / 4) << "the texts would prove nothing";
}

INSTANTIATE_TEST_SUITE_P(Seeds, LineSelectionOfGeneratedTexts,
                         testing::Combine(testing::ValuesIn(allProviders), testing::Values(1U, 2U, 3U, 4U)),
                         [](const auto& parameter) {
                             return std::string(rawValue(std::get<0>(parameter.param)))
                                 + std::to_string(std::get<1>(parameter.param));
                         });

/// One record at each offset up to a few blocks, and as the very last bytes of a text.
class LineSelectionAtEveryOffset : public testing::TestWithParam<Provider> { };

TEST_P(LineSelectionAtEveryOffset, recordIsReadAtEveryOffset)
{
    const Provider provider = GetParam();
    const std::string plain = provider == Provider::claude ? claudeLine() : codexLine();
    std::string escaped = plain;
    escaped.replace(escaped.find("usage\""), 5, "us\\u0061ge");
    GuardedText room(8 * 1024);
    for (const std::string& record : {plain, escaped}) {
        for (std::size_t before = 0; before <= 600; ++before) {
            const std::string last = std::string(before, 'x') + '\n' + record;
            const std::string between = last + "\n{\"text\":\"" + std::string(before, 'y') + "\"}";
            const std::string inside = '{' + std::string(before, ' ') + record.substr(1);
            for (const std::string& text : {last, between, inside}) {
                const HistoryLines lines(room.atEnd(text));
                const auto expected = provider == Provider::claude ? claudeSample() : codexSample();
                ASSERT_EQ(parse(provider, lines, LineSelection::mentioning), std::vector{expected}) << text;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Providers, LineSelectionAtEveryOffset, testing::ValuesIn(allProviders),
                         [](const auto& parameter) { return std::string(rawValue(parameter.param)); });

TEST(LineSelection, everySpellingOfTheWantedWordsIsRead)
{
    const std::string usage = R"({"output_tokens":5})";
    for (const char* key : {R"("usage")", R"("\u0075sage")", R"("usag\u0065")", R"("\u0075\u0073\u0061\u0067\u0065")"})
    {
        const std::string text =
            claudeLine({{"message.usage", ""}, {"message.model", "null," + std::string(key) + ':' + usage}});
        EXPECT_EQ(totalsOf(ClaudeUsageParser::parse(HistoryLines(text))), std::vector<std::int64_t>{5}) << text;
    }
    for (const char* key : {R"("last_token_usage")", R"("last\u005ftoken_usage")", R"("last\u005Ftoken\u005Fusage")"}) {
        const std::string text = codexLine({{"payload.info", '{' + std::string(key) + ':' + usage + '}'}});
        EXPECT_EQ(totalsOf(CodexUsageParser::parse(HistoryLines(text))), std::vector<std::int64_t>{5}) << text;
    }
    const std::string text = claudeLine({{"type", R"("\u0061ssistant")"}});
    EXPECT_EQ(ClaudeUsageParser::parse(HistoryLines(text)), std::vector{claudeSample()});
}

} // namespace
} // namespace tallyfox::test
