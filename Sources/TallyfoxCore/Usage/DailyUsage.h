#pragma once

#include "TallyfoxCore/Time/Instant.h"

#include <cstdint>

namespace tallyfox {

/// The tokens of one calendar day.
struct DailyUsage {
    Instant date = distantPast; ///< first instant of the local day
    std::int64_t tokens = 0; ///< sum of the totals of the day's samples

    /// Identity among the days of one series, which never holds a day twice.
    [[nodiscard]] Instant id() const
    {
        return date;
    }

    friend bool operator==(const DailyUsage&, const DailyUsage&) = default;
};

} // namespace tallyfox
