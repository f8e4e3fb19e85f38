#pragma once

#include "Support/Moments.h"
#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <string>
#include <utility>

namespace tallyfox::test {

/// When every snapshot of these tests is drawn.
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

} // namespace tallyfox::test
