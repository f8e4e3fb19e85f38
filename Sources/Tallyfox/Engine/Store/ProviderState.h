#pragma once

#include "TallyfoxCore/Usage/QuotaSnapshot.h"
#include "TallyfoxCore/Usage/UsageSummary.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallyfox {

/// The condition of a provider's data source; the raw value is the label of its badge.
enum class SourceHealth { connected, localOnly, stale, permissionRequired, unavailable };

/// "Connected", "Local history", "Stale", "Permission" or "Unavailable".
std::string_view rawValue(SourceHealth health);

/// Everything shown about one provider. Never modified, only replaced as a whole.
struct ProviderState {
    Provider provider = Provider::claude;
    std::optional<QuotaSnapshot> quota; ///< the latest one obtained, possibly before a failed fetch
    UsageSummary summary; ///< an empty one before the first scan
    SourceHealth health = SourceHealth::unavailable;
    std::string detail; ///< one line, shown next to the badge
    Instant updatedAt = distantPast; ///< when data were last obtained; `distantPast` for never
    bool isPartialHistory = false; ///< the history scan could not read everything
    bool isQuotaStale = false; ///< `quota` was kept after a failed fetch

    /// Identity among the states of a list.
    [[nodiscard]] Provider id() const
    {
        return provider;
    }

    friend bool operator==(const ProviderState&, const ProviderState&) = default;
};

/// The state before the first refresh: no quota, an empty summary, "Waiting for first refresh".
ProviderState initialState(Provider provider, Instant now, const Calendar& calendar);

/// The result of loading one provider once.
struct ProviderUpdate {
    Provider provider = Provider::claude;
    std::optional<UsageSummary> summary; ///< absent when the scan was impossible or failed
    bool isPartialHistory = false; ///< the scan's flag; false without a summary
    bool historyPermissionRequired = false; ///< there was no authorized home folder to scan
    std::optional<QuotaSnapshot> quota; ///< as fetched by this load; absent for a provider without a quota
    bool quotaFailed = false; ///< a fetch was attempted and failed
    Instant attemptedAt = distantPast; ///< when the load finished

    friend bool operator==(const ProviderUpdate&, const ProviderUpdate&) = default;
};

/// The next state of a provider. Keeps the last good quota and summary, marks a quota kept after a failed fetch as
/// stale, and chooses health and detail. `now` and `calendar` are only used for an empty summary.
ProviderState merge(const ProviderUpdate& update, const ProviderState* previous, Instant now, const Calendar& calendar);

/// The highest primary percentage of all quotas, including stale ones, rounded to the nearest integer, halves away from
/// zero, and not clamped; nothing without a quota. A percentage that is not finite or does not fit 64 bits is a
/// programming error and ends the program.
std::optional<std::int64_t> combinedPercent(const std::vector<ProviderState>& states);

} // namespace tallyfox
