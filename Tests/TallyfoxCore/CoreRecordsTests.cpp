#include "Support/Moments.h"
#include "TallyfoxCore/TallyfoxCore.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

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

TEST(Provider, otherTextsAreNoProvider)
{
    for (const char* text : {"Claude", "CODEX", "", "claude ", "gemini"})
        EXPECT_EQ(providerFromRawValue(text), std::nullopt) << text;
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

} // namespace
} // namespace tallyfox::test
