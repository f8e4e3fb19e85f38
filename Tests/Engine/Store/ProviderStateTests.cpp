#include "Support/Moments.h"
#include "Tallyfox/Engine/Store/ProviderState.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace tallyfox::test {

namespace {

using std::chrono::days;
using std::chrono::hours;

const Instant now = utcTime(2026, 11, 21, 12);

UsageSummary summary(std::int64_t tokens, days age = days{0})
{
    UsageSample sample;
    sample.timestamp = now - age;
    sample.totalTokens = tokens;
    return UsageSummary{{&sample, 1}, now, Calendar::utc()};
}

QuotaSnapshot quota(double usedPercent)
{
    QuotaSnapshot snapshot;
    snapshot.primary.usedPercent = usedPercent;
    snapshot.confidence = MeasurementConfidence::exact;
    return snapshot;
}

ProviderState merged(const ProviderUpdate& update, const ProviderState* previous)
{
    return merge(update, previous, now, Calendar::utc());
}

ProviderState initial(Provider provider)
{
    return initialState(provider, now, Calendar::utc());
}

ProviderUpdate codexUpdate()
{
    ProviderUpdate update;
    update.provider = Provider::codex;
    update.attemptedAt = now;
    return update;
}

ProviderState connectedCodex()
{
    ProviderUpdate update = codexUpdate();
    update.summary = summary(100);
    update.quota = quota(40);
    update.attemptedAt = now - hours{1};
    return merged(update, nullptr);
}

void expectBadge(const ProviderState& state, SourceHealth health, std::string_view detail)
{
    EXPECT_EQ(rawValue(state.health), rawValue(health));
    EXPECT_EQ(state.detail, detail);
}

} // namespace

TEST(SourceHealth, rawValuesAreTheLabels)
{
    EXPECT_EQ(rawValue(SourceHealth::connected), "Connected");
    EXPECT_EQ(rawValue(SourceHealth::localOnly), "Local history");
    EXPECT_EQ(rawValue(SourceHealth::stale), "Stale");
    EXPECT_EQ(rawValue(SourceHealth::permissionRequired), "Permission");
    EXPECT_EQ(rawValue(SourceHealth::unavailable), "Unavailable");
}

TEST(ProviderState, initialStateWaitsForTheFirstRefresh)
{
    const ProviderState state = initial(Provider::codex);
    EXPECT_EQ(state.id(), Provider::codex);
    EXPECT_EQ(state.quota, std::nullopt);
    EXPECT_EQ(state.summary, (UsageSummary{{}, now, Calendar::utc()}));
    EXPECT_EQ(state.summary.last365Days.size(), 365U);
    expectBadge(state, SourceHealth::unavailable, "Waiting for first refresh");
    EXPECT_EQ(state.updatedAt, distantPast);
    EXPECT_FALSE(state.isPartialHistory);
    EXPECT_FALSE(state.isQuotaStale);
}

TEST(Merge, firstRefreshWithFailedFetchAndHistoryIsLocalOnlyAndNotStale)
{
    ProviderUpdate update = codexUpdate();
    update.summary = summary(100);
    update.quotaFailed = true;
    const ProviderState initialCodex = initial(Provider::codex);
    for (const ProviderState* const previous : {static_cast<const ProviderState*>(nullptr), &initialCodex}) {
        const ProviderState state = merged(update, previous);
        expectBadge(state, SourceHealth::localOnly, "Observed from local history");
        EXPECT_EQ(state.quota, std::nullopt);
        EXPECT_FALSE(state.isQuotaStale);
        EXPECT_EQ(state.updatedAt, now);
    }
}

TEST(Merge, connectedCodexWhoseNextFetchFailsKeepsTheQuotaAsStale)
{
    const ProviderState previous = connectedCodex();
    expectBadge(previous, SourceHealth::connected, "Official usage API");
    ProviderUpdate update = codexUpdate();
    update.summary = summary(200);
    update.quotaFailed = true;
    const ProviderState state = merged(update, &previous);
    expectBadge(state, SourceHealth::stale, "Showing last successful quota");
    EXPECT_EQ(state.quota, previous.quota);
    EXPECT_TRUE(state.isQuotaStale);
    EXPECT_EQ(state.updatedAt, now);
    EXPECT_EQ(state.summary, summary(200));
}

TEST(Merge, staleCodexStaysStaleThroughFailuresUntilAFetchSucceeds)
{
    ProviderUpdate failed = codexUpdate();
    failed.quotaFailed = true;
    const ProviderState connected = connectedCodex();
    const ProviderState once = merged(failed, &connected);
    const ProviderState twice = merged(failed, &once);
    expectBadge(twice, SourceHealth::stale, "Showing last successful quota");
    EXPECT_EQ(twice.quota, quota(40));
    ProviderUpdate succeeded = codexUpdate();
    succeeded.quota = quota(41);
    const ProviderState healed = merged(succeeded, &twice);
    expectBadge(healed, SourceHealth::connected, "Official usage API");
    EXPECT_FALSE(healed.isQuotaStale);
    EXPECT_EQ(healed.quota, quota(41));
}

TEST(Merge, staleQuotaOutranksAMissingPermission)
{
    const ProviderState previous = connectedCodex();
    ProviderUpdate update = codexUpdate();
    update.quotaFailed = true;
    update.historyPermissionRequired = true;
    expectBadge(merged(update, &previous), SourceHealth::stale, "Showing last successful quota");
}

TEST(Merge, freshQuotaOutranksAMissingPermissionAndAFailureFlag)
{
    const ProviderState previous = connectedCodex();
    ProviderUpdate update = codexUpdate();
    update.quota = quota(50);
    update.quotaFailed = true;
    update.historyPermissionRequired = true;
    const ProviderState state = merged(update, &previous);
    expectBadge(state, SourceHealth::connected, "Official usage API");
    EXPECT_FALSE(state.isQuotaStale);
    EXPECT_EQ(state.updatedAt, now);
}

TEST(Merge, noAccessAndNoPreviousDataRequiresPermission)
{
    ProviderUpdate update = codexUpdate();
    update.historyPermissionRequired = true;
    update.isPartialHistory = true; // ignored without a summary
    const ProviderState state = merged(update, nullptr);
    expectBadge(state, SourceHealth::permissionRequired, "Home folder access required");
    EXPECT_EQ(state.summary, (UsageSummary{{}, now, Calendar::utc()}));
    EXPECT_EQ(state.updatedAt, distantPast);
    EXPECT_FALSE(state.isPartialHistory);
    EXPECT_FALSE(state.isQuotaStale);
}

TEST(Merge, missingPermissionOutranksKeptHistory)
{
    const ProviderState previous = connectedCodex();
    ProviderUpdate update = codexUpdate();
    update.historyPermissionRequired = true;
    const ProviderState state = merged(update, &previous);
    expectBadge(state, SourceHealth::permissionRequired, "Home folder access required");
    EXPECT_EQ(state.summary, previous.summary);
}

TEST(Merge, keptQuotaDoesNotCountAsConnected)
{
    const ProviderState previous = connectedCodex();
    ProviderUpdate update = codexUpdate();
    update.summary = summary(100);
    const ProviderState state = merged(update, &previous);
    expectBadge(state, SourceHealth::localOnly, "Observed from local history");
    EXPECT_EQ(state.quota, previous.quota);
    EXPECT_FALSE(state.isQuotaStale);
}

TEST(Merge, claudeWithHistoryIsLocalOnlyAndMarkedWhenPartial)
{
    ProviderUpdate update;
    update.provider = Provider::claude;
    update.summary = summary(1);
    const ProviderState previous = initial(Provider::claude);
    for (const auto& [isPartial, detail] :
         {std::pair{false, "Observed from local history"}, std::pair{true, "Partial local history"}})
    {
        update.isPartialHistory = isPartial;
        const ProviderState state = merged(update, &previous);
        expectBadge(state, SourceHealth::localOnly, detail);
        EXPECT_EQ(state.isPartialHistory, isPartial);
        EXPECT_EQ(state.provider, Provider::claude);
    }
}

TEST(Merge, zerosAndHistoryOlderThanAYearDoNotCountAsHistory)
{
    for (const UsageSummary& nothing : {summary(0), summary(1000, days{400}), summary(-5)}) {
        ProviderUpdate update = codexUpdate();
        update.summary = nothing;
        update.isPartialHistory = true;
        expectBadge(merged(update, nullptr), SourceHealth::unavailable, "Log in via CLI and refresh");
    }
}

TEST(Merge, oldestDayOfTheYearCountsAsHistory)
{
    ProviderUpdate update = codexUpdate();
    update.summary = summary(1, days{364});
    expectBadge(merged(update, nullptr), SourceHealth::localOnly, "Observed from local history");
}

TEST(Merge, updateWithNeitherSummaryNorQuotaKeepsTimeAndPartialFlag)
{
    ProviderState previous = connectedCodex();
    previous.isPartialHistory = true;
    ProviderUpdate update = codexUpdate();
    update.quotaFailed = true;
    const ProviderState state = merged(update, &previous);
    EXPECT_EQ(state.updatedAt, now - hours{1});
    EXPECT_TRUE(state.isPartialHistory);
    EXPECT_EQ(state.summary, previous.summary);
}

TEST(Merge, updateWithoutSummaryDoesNotDescribeKeptHistoryAsPartial)
{
    ProviderState previous = initial(Provider::claude);
    previous.summary = summary(5);
    previous.isPartialHistory = true;
    ProviderUpdate update;
    update.provider = Provider::claude;
    const ProviderState state = merged(update, &previous);
    expectBadge(state, SourceHealth::localOnly, "Observed from local history");
    EXPECT_TRUE(state.isPartialHistory);
}

TEST(Merge, newSummaryReplacesThePartialFlag)
{
    ProviderState previous = initial(Provider::claude);
    previous.isPartialHistory = true;
    ProviderUpdate update;
    update.summary = summary(5);
    EXPECT_FALSE(merged(update, &previous).isPartialHistory);
}

namespace {

std::optional<std::int64_t> percentOf(const std::vector<double>& percentages)
{
    std::vector<ProviderState> states{initial(Provider::claude)};
    for (const double percent : percentages) {
        states.push_back(initial(Provider::codex));
        states.back().quota = quota(percent);
    }
    return combinedPercent(states);
}

} // namespace

TEST(CombinedPercent, withoutAnyQuotaIsAbsent)
{
    EXPECT_EQ(percentOf({}), std::nullopt);
    EXPECT_EQ(combinedPercent({}), std::nullopt);
}

TEST(CombinedPercent, isTheHighestPrimaryPercentageRoundedHalvesAwayFromZero)
{
    EXPECT_EQ(percentOf({72.5}), 73);
    EXPECT_EQ(percentOf({49.5}), 50);
    EXPECT_EQ(percentOf({49.499999999999993}), 49);
    EXPECT_EQ(percentOf({-0.5}), -1);
    EXPECT_EQ(percentOf({10, 90, 20}), 90);
    EXPECT_EQ(percentOf({-30, -20}), -20);
    EXPECT_EQ(percentOf({250.4}), 250);
    EXPECT_EQ(percentOf({-std::numeric_limits<double>::infinity(), 3}), 3);
}

TEST(CombinedPercent, countsStaleQuotasAndIgnoresSecondaryWindows)
{
    ProviderState state = initial(Provider::codex);
    state.quota = quota(40);
    state.quota->secondary = QuotaWindow{.usedPercent = 99, .resetsAt = {}, .windowMinutes = {}};
    state.isQuotaStale = true;
    EXPECT_EQ(combinedPercent({state}), 40);
}

TEST(CombinedPercent, coversTheWholeRangeOfIntegers)
{
    EXPECT_EQ(percentOf({0x1p62}), std::int64_t{1} << 62);
    EXPECT_EQ(percentOf({-0x1p63}), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(percentOf({0x1.fffffffffffffp62}), 9'223'372'036'854'774'784);
}

TEST(CombinedPercent, percentageBeyond64BitsEndsTheProgram)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    for (const std::vector<double>& percentages : {std::vector{infinity},
                                                   {-infinity},
                                                   {notANumber},
                                                   {5.0, notANumber},
                                                   {notANumber, 5.0},
                                                   {0x1p63},
                                                   {-0x1.1p63}})
    {
        EXPECT_EXIT((void)percentOf(percentages), testing::ExitedWithCode(1),
                    "^tallyfox: stopped: the quota percentage is no number that 64 bits hold\n$");
    }
}

} // namespace tallyfox::test
