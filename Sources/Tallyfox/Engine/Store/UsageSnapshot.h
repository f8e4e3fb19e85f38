#pragma once

#include "Tallyfox/Engine/Store/ProviderState.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tallyfox {

class UsageStore;

/// Everything that the views draw, as the store has published it, at one moment.
struct UsageSnapshot {
    std::vector<ProviderState> states{};
    bool isRefreshing = false;
    std::optional<Instant> lastUpdated{}; ///< nothing before the first refresh
    std::optional<std::int64_t> combinedPercent{};
    bool hasHomeAccess = false;
    Instant now = distantPast; ///< that moment: what reset times are told from
    Calendar calendar = Calendar::utc(); ///< the user's, for days and times of day
};

/// What `store` publishes now. Main thread.
UsageSnapshot usageSnapshot(const UsageStore& store, Instant now, Calendar calendar);

} // namespace tallyfox
