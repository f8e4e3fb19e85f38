#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include "Tallyfox/Engine/Store/UsageStore.h"

#include <utility>

namespace tallyfox {

UsageSnapshot usageSnapshot(const UsageStore& store, Instant now, Calendar calendar)
{
    return {.states = store.states(),
            .isRefreshing = store.isRefreshing(),
            .lastUpdated = store.lastUpdated(),
            .combinedPercent = store.combinedPercent(),
            .hasHomeAccess = store.hasHomeAccess(),
            .now = now,
            .calendar = std::move(calendar)};
}

} // namespace tallyfox
