#pragma once

#include "TallyfoxCore/Time/Calendar.h"
#include "TallyfoxCore/Usage/UsageSample.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tallyfox {

/// The tokens of one calendar day.
struct DailyUsage {
    Instant date = distantPast; ///< first instant of the local day
    std::int64_t tokens = 0; ///< sum of the totals of the day's samples

    /// Identity within a series, which never has a day twice.
    [[nodiscard]] Instant id() const
    {
        return date;
    }

    friend bool operator==(const DailyUsage&, const DailyUsage&) = default;
};

/// The sums of a provider's samples: a zero-filled daily series of the 365 local days that end today.
struct UsageSummary {
    std::int64_t totalTokens = 0; ///< sum over `last30Days`, not over all history
    std::int64_t todayTokens = 0; ///< tokens of the last day
    std::vector<DailyUsage> last30Days; ///< the last 30 entries of `last365Days`
    std::vector<DailyUsage> last365Days; ///< oldest first, the last one today; days that the zone skipped are absent

    UsageSummary() = default;

    /// Adds up `samples`, in any order and of any provider. Samples before the first day and after today are
    /// ignored. A sum beyond 64 bits ends the program (TokenSum.h).
    UsageSummary(std::span<const UsageSample> samples, Instant now, const Calendar& calendar);

    /// The last `days` entries of `last365Days`, oldest first; `days` is clamped to 1 to 365.
    [[nodiscard]] std::vector<DailyUsage> series(std::int64_t days) const;

    friend bool operator==(const UsageSummary&, const UsageSummary&) = default;
};

} // namespace tallyfox
