#pragma once

#include "Support/Moments.h"
#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tallyfox::test {

/// The current moment of the snapshots of these tests.
inline const Instant now = utcTime(2026, 3, 15, 14, 5);

inline ProviderState providerState(Provider provider, SourceHealth health, std::string detail, std::int64_t tokens = 0)
{
    ProviderState state = initialState(provider, now, Calendar::utc());
    state.health = health;
    state.detail = std::move(detail);
    if (tokens != 0) {
        UsageSample sample;
        sample.timestamp = now;
        sample.totalTokens = tokens;
        state.summary = UsageSummary{{&sample, 1}, now, Calendar::utc()};
    }
    return state;
}

/// Claude, counted on this computer.
inline ProviderState claudeState(std::int64_t tokens = 1'250'001)
{
    return providerState(Provider::claude, SourceHealth::localOnly, "Observed from local history", tokens);
}

/// Codex with a quota that resets in two hours, and with tokens.
inline ProviderState codexState(double usedPercent = 42.4)
{
    ProviderState state = providerState(Provider::codex, SourceHealth::connected, "Official usage API", 45'600);
    QuotaSnapshot quota;
    quota.primary.usedPercent = usedPercent;
    quota.primary.resetsAt = now + std::chrono::hours{2};
    quota.confidence = MeasurementConfidence::exact;
    state.quota = quota;
    return state;
}

/// The same, with a second window that resets in three days.
inline ProviderState codexStateWithWeekly(double usedPercent = 63.5)
{
    ProviderState state = codexState();
    QuotaWindow weekly;
    weekly.usedPercent = usedPercent;
    weekly.resetsAt = now + std::chrono::days{3};
    state.quota->secondary = weekly;
    return state;
}

inline UsageSnapshot snapshotOf(std::vector<ProviderState> states)
{
    return {.states = std::move(states), .lastUpdated = now, .hasHomeAccess = true, .now = now};
}

/// The current moment of the snapshots with a year of history.
inline const Instant dailyNow = utcTime(2026, 11, 21, 9, 41, 7);

/// A summary with `tokensOf(daysAgo)` tokens per day, for 0 (today) to 364 days ago.
inline UsageSummary dailySummary(const std::function<std::int64_t(int)>& tokensOf)
{
    std::vector<UsageSample> samples(365);
    for (int daysAgo = 0; daysAgo < 365; ++daysAgo) {
        samples[static_cast<std::size_t>(daysAgo)].timestamp = dailyNow - std::chrono::days{daysAgo};
        samples[static_cast<std::size_t>(daysAgo)].totalTokens = tokensOf(daysAgo);
    }
    return {samples, dailyNow, Calendar::utc()};
}

inline ProviderState dailyState(Provider provider, const std::function<std::int64_t(int)>& tokensOf)
{
    ProviderState state = initialState(provider, dailyNow, Calendar::utc());
    state.summary = dailySummary(tokensOf);
    state.health = SourceHealth::localOnly;
    state.detail = "Observed from local history";
    return state;
}

/// The same number of tokens every day.
inline ProviderState evenState(Provider provider, std::int64_t tokensADay)
{
    return dailyState(provider, [tokensADay](int) { return tokensADay; });
}

/// A snapshot of states with a year of days that ends at `dailyNow`.
inline UsageSnapshot dailySnapshotOf(std::vector<ProviderState> states)
{
    return {.states = std::move(states), .hasHomeAccess = true, .now = dailyNow};
}

} // namespace tallyfox::test
