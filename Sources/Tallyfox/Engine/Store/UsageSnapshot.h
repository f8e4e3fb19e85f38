#pragma once

#include "Tallyfox/Engine/Store/ProviderState.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tallyfox {

/// Everything that views and summaries show: what the store has published so far.
struct UsageSnapshot {
    std::vector<ProviderState> states{}; ///< one per provider, in the order of `allProviders`
    bool isRefreshing = false;
    std::optional<Instant> lastUpdated{}; ///< nothing before the first refresh
    std::optional<std::int64_t> combinedPercent{};
    bool hasHomeAccess = false;
    Instant now = distantPast; ///< when the snapshot was taken: times are shown relative to it
    Calendar calendar = Calendar::utc(); ///< with which the days of `states` were counted
};

} // namespace tallyfox
