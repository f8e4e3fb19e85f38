#pragma once

#include <algorithm>
#include <chrono>

namespace tallyfox {

/// A stretch of time during which a zone keeps one offset from UTC.
struct ZoneOffset {
    std::chrono::sys_seconds begin; ///< first second of the stretch
    std::chrono::sys_seconds end; ///< first second after it
    std::chrono::seconds offset{}; ///< local time minus UTC, between -`largest` and `largest`

    /// No zone is further from UTC than this; data that say otherwise are refused.
    static constexpr std::chrono::hours largest{26};
    /// No stretch begins earlier or ends later. Two years more at each end than instants have, so that the
    /// days of a year before and after every instant can be found.
    static constexpr std::chrono::sys_seconds earliest{std::chrono::sys_days{std::chrono::year{-1} / 1 / 1}};
    static constexpr std::chrono::sys_seconds latest{std::chrono::sys_days{std::chrono::year{10002} / 1 / 1}};

    /// A stretch that lasts for ever.
    static constexpr ZoneOffset always(std::chrono::seconds offset)
    {
        return {earliest, latest, offset};
    }

    /// The part of this stretch between two moments.
    [[nodiscard]] constexpr ZoneOffset within(std::chrono::sys_seconds from, std::chrono::sys_seconds to) const
    {
        return {std::max(begin, from), std::min(end, to), offset};
    }

    friend bool operator==(const ZoneOffset&, const ZoneOffset&) = default;
};

} // namespace tallyfox
