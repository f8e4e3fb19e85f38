#pragma once

#include "Support/Moments.h"
#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace tallyfox::test {

inline const Instant dailyNow = utcTime(2026, 11, 21, 9, 41, 7);

/// A summary whose days have what `tokensOf` says: 0 for today, 1 for yesterday, up to 364.
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

/// The same tokens on every day.
inline ProviderState evenState(Provider provider, std::int64_t tokensADay)
{
    return dailyState(provider, [tokensADay](int) { return tokensADay; });
}

inline UsageSnapshot snapshotOf(std::vector<ProviderState> states)
{
    UsageSnapshot snapshot;
    snapshot.states = std::move(states);
    snapshot.hasHomeAccess = true;
    snapshot.now = dailyNow;
    return snapshot;
}

} // namespace tallyfox::test
