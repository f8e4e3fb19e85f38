#pragma once

#include "Tallyfox/Engine/Store/ProviderState.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tallyfox {

/// What one refresh has published: everything that a summary prints.
struct SummaryFigures {
    std::vector<ProviderState> states{}; ///< one per provider, in the order of `allProviders`
    std::optional<Instant> lastUpdated{}; ///< nothing before the first refresh
    std::optional<std::int64_t> combinedPercent{};
    bool hasHomeAccess = false;
    Calendar calendar = Calendar::utc(); ///< the one the states' days were made with
};

} // namespace tallyfox
