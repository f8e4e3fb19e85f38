#include "Support/HeapWatch.h"
#include "Support/HistoryFolder.h"
#include "Support/HistoryRecords.h"
#include "Support/Moments.h"
#include "TallyfoxCore/Files/LocalUsageScanner.h"
#include "TallyfoxCore/Json/Utf8.h"
#include "TallyfoxCore/Usage/ClaudeUsageParser.h"
#include "TallyfoxCore/Usage/CodexRateLimitParser.h"
#include "TallyfoxCore/Usage/CodexUsageParser.h"
#include "TallyfoxCore/Usage/UsageSummary.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

namespace tallyfox::test {
namespace {

/// Lets each allocation of `work` fail in turn. It must throw std::bad_alloc or, where it copes with the failure, give
/// its usual result; and it must release all memory and all descriptors.
template <typename Work> void expectNothingLeftBehind(const Work& work)
{
    const auto expected = work();
    const std::size_t descriptors = openDescriptors();
    std::size_t failures = 0;
    for (bool hasFailed = true; hasFailed; ++failures) {
        const HeapWatch heap;
        {
            const FailingAllocation failing{failures + 1};
            try {
                const bool isSame = work() == expected;
                hasFailed = failing.hasFailed();
                ASSERT_TRUE(isSame) << "allocation " << failures + 1;
            } catch (const std::bad_alloc&) {
                ASSERT_TRUE(failing.hasFailed()) << "a failure of its own";
            }
        }
        ASSERT_EQ(heap.held(), 0) << "after failure of allocation " << failures + 1;
        ASSERT_EQ(openDescriptors(), descriptors) << "after failure of allocation " << failures + 1;
    }
    EXPECT_GT(failures, 1U) << "nothing has failed";
}

/// Records that need every kind of memory: records without ids, models, escapes, bytes to be repaired.
std::string claudeText()
{
    return textOf({claudeLine(), claudeLine({{"message.id", ""}, {"message.model", "\"fox \\u00e9 \xFF and more\""}}),
                   claudeLine({{"message.id", R"("message \u0031 with a longer name than others")"}}),
                   claudeLine({{"timestamp", R"("\u0032026-11-21T09:41:06Z")"}})});
}

class AllocationFailure : public HistoryFolder { };

TEST_F(AllocationFailure, claudeParserReleasesEverything)
{
    const std::string text = claudeText();
    expectNothingLeftBehind([&] { return ClaudeUsageParser::parse(HistoryLines(text)); });
}

TEST_F(AllocationFailure, codexParserReleasesEverything)
{
    const std::string text = textOf({codexLine(), codexLine({{"timestamp", R"("\u0032026-11-21T09:41:06Z")"}})});
    expectNothingLeftBehind([&] { return CodexUsageParser::parse(HistoryLines(text)); });
}

TEST_F(AllocationFailure, scanReleasesEverything)
{
    write("a.jsonl", claudeText(), 1);
    write("folder with a long name/b.jsonl", claudeText(), 2);
    write("folder/in/folder/c.jsonl", claudeText(), 3);
    expectNothingLeftBehind([this] { return LocalUsageScanner::scanResult(Provider::claude, root()); });
}

TEST_F(AllocationFailure, summaryReleasesEverything)
{
    const std::vector<UsageSample> samples{claudeSample(), codexSample()};
    expectNothingLeftBehind([&] { return UsageSummary(samples, utcTime(2026, 11, 21, 12), zone("Europe/Berlin")); });
}

TEST_F(AllocationFailure, calendarReleasesEverything)
{
    expectNothingLeftBehind([] {
        const auto calendar = Calendar::named("<-03>3<-02>,M3.5.0/-2,M10.5.0/-1");
        return calendar ? calendar->startOfDay(localDay(2026, 11, 21)) : std::nullopt;
    });
}

TEST_F(AllocationFailure, repairReleasesEverything)
{
    const std::string broken = "a text that is too long to be kept in place \xFF\xC3";
    expectNothingLeftBehind([&] { return repairedUtf8(broken); });
}

} // namespace
} // namespace tallyfox::test
