#include "Support/Moments.h"
#include "TallyfoxCore/Files/LocalUsageScanner.h"
#include "TallyfoxCore/TallyfoxCore.h"
#include "TallyfoxCore/Time/Calendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace tallyfox::test {
namespace {

TEST(Provider, rawValuesAreReadBackExactly)
{
    EXPECT_EQ(allProviders, (std::array{Provider::claude, Provider::codex}));
    EXPECT_EQ(rawValue(Provider::claude), "claude");
    EXPECT_EQ(rawValue(Provider::codex), "codex");
    for (const Provider provider : allProviders)
        EXPECT_EQ(providerFromRawValue(rawValue(provider)), provider);
}

TEST(Provider, otherTextsGiveNoProvider)
{
    for (const char* text : {"Claude", "CODEX", "", "claude ", "gemini"})
        EXPECT_EQ(providerFromRawValue(text), std::nullopt) << text;
}

TEST(ProviderTraits, areThoseOfTheirProvider)
{
    EXPECT_EQ(traitsOf(Provider::claude).provider, Provider::claude);
    EXPECT_EQ(traitsOf(Provider::claude).title, "Claude");
    EXPECT_FALSE(traitsOf(Provider::claude).hasQuota);
    EXPECT_EQ(traitsOf(Provider::codex).provider, Provider::codex);
    EXPECT_EQ(traitsOf(Provider::codex).title, "Codex");
    EXPECT_TRUE(traitsOf(Provider::codex).hasQuota);
}

TEST(MeasurementConfidence, rawValuesAreReadBackExactly)
{
    using enum MeasurementConfidence;
    for (const MeasurementConfidence confidence : {exact, observed, estimated, unknown})
        EXPECT_EQ(measurementConfidenceFromRawValue(rawValue(confidence)), confidence);
    EXPECT_EQ(rawValue(exact), "exact");
    EXPECT_EQ(rawValue(observed), "observed");
    EXPECT_EQ(rawValue(estimated), "estimated");
    EXPECT_EQ(rawValue(unknown), "unknown");
    EXPECT_EQ(measurementConfidenceFromRawValue("Exact"), std::nullopt);
}

TEST(UsageSample, absentModelDiffersFromAnyModel)
{
    UsageSample without;
    UsageSample with = without;
    EXPECT_EQ(without, with);
    with.model = "";
    EXPECT_NE(without, with);
}

TEST(QuotaWindow, percentThatIsNotANumberEqualsNothing)
{
    QuotaWindow window;
    EXPECT_EQ(window, window);
    window.usedPercent = std::nan("");
    EXPECT_FALSE(window == QuotaWindow{window});
}

TEST(QuotaSnapshot, secondWindowCountsInEquality)
{
    const QuotaSnapshot one;
    QuotaSnapshot two;
    EXPECT_EQ(one, two);
    two.secondary = QuotaWindow{};
    EXPECT_NE(one, two);
}

TEST(DailyUsage, daysWithDifferentCountsShareTheIdentityOnly)
{
    const DailyUsage few{utcTime(2026, 11, 21), 1};
    const DailyUsage many{utcTime(2026, 11, 21), 2};
    EXPECT_EQ(few.id(), many.id());
    EXPECT_NE(few, many);
}

TEST(Instant, secondsSince1970SaturateAtTheYearsOneAnd9999)
{
    EXPECT_EQ(instantFromUnixSeconds(0), utcTime(1970, 1, 1));
    EXPECT_EQ(instantFromUnixSeconds(-0.0000006), utcTime(1970, 1, 1) - std::chrono::microseconds{1});
    EXPECT_EQ(instantFromUnixSeconds(253'402'300'800.0), distantFuture);
    EXPECT_EQ(instantFromUnixSeconds(1e300), distantFuture);
    EXPECT_EQ(instantFromUnixSeconds(std::numeric_limits<double>::infinity()), distantFuture);
    EXPECT_EQ(instantFromUnixSeconds(-1e300), distantPast);
    EXPECT_EQ(instantFromUnixSeconds(-62'135'596'800.0), distantPast);
    EXPECT_EQ(instantFromUnixSeconds(std::nan("")), distantPast);
}

/// Records that differ in any one member are not equal.
template <typename Record> void expectDifference(const std::vector<void (*)(Record&)>& changes)
{
    for (const auto change : changes) {
        Record changed{};
        change(changed);
        EXPECT_FALSE(changed == Record{});
        EXPECT_TRUE(changed == Record{changed});
    }
}

TEST(CoreRecords, everyMemberCountsInEquality)
{
    expectDifference<DailyUsage>(
        {[](DailyUsage& day) { day.date = distantFuture; }, [](DailyUsage& day) { day.tokens = 1; }});
    expectDifference<QuotaWindow>({[](QuotaWindow& window) { window.usedPercent = 1; },
                                   [](QuotaWindow& window) { window.resetsAt = distantPast; },
                                   [](QuotaWindow& window) { window.windowMinutes = 1; }});
    expectDifference<QuotaSnapshot>({[](QuotaSnapshot& quota) { quota.provider = Provider::claude; },
                                     [](QuotaSnapshot& quota) { quota.primary.usedPercent = 1; },
                                     [](QuotaSnapshot& quota) { quota.secondary.emplace(); },
                                     [](QuotaSnapshot& quota) { quota.confidence = MeasurementConfidence::exact; }});
    expectDifference<UsageSample>(
        {[](UsageSample& sample) { sample.provider = Provider::codex; },
         [](UsageSample& sample) { sample.timestamp = distantFuture; },
         [](UsageSample& sample) { sample.model = "fox"; }, [](UsageSample& sample) { sample.inputTokens = 1; },
         [](UsageSample& sample) { sample.outputTokens = 1; },
         [](UsageSample& sample) { sample.cachedInputTokens = 1; },
         [](UsageSample& sample) { sample.reasoningTokens = 1; }, [](UsageSample& sample) { sample.totalTokens = 1; },
         [](UsageSample& sample) { sample.confidence = MeasurementConfidence::exact; }});
    expectDifference<UsageSummary>({[](UsageSummary& summary) { summary.totalTokens = 1; },
                                    [](UsageSummary& summary) { summary.todayTokens = 1; },
                                    [](UsageSummary& summary) { summary.last30Days.emplace_back(); },
                                    [](UsageSummary& summary) { summary.last365Days.emplace_back(); }});
    expectDifference<LocalUsageScanResult>({[](LocalUsageScanResult& result) { result.isPartial = true; },
                                            [](LocalUsageScanResult& result) { result.samples.emplace_back(); }});
    expectDifference<FileError>({[](FileError& error) { error.code = std::make_error_code(std::errc::io_error); }});
    using std::chrono::seconds;
    expectDifference<ZoneOffset>({[](ZoneOffset& stretch) { stretch.begin += seconds{1}; },
                                  [](ZoneOffset& stretch) { stretch.end += seconds{1}; },
                                  [](ZoneOffset& stretch) { stretch.offset += seconds{1}; }});
}

} // namespace
} // namespace tallyfox::test
