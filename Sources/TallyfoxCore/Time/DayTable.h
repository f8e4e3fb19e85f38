#pragma once

#include "TallyfoxCore/Time/Calendar.h"
#include "TallyfoxCore/Time/Instant.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

namespace tallyfox {

/// Consecutive local days, laid out once so that an instant finds its day by binary search.
class DayTable {
public:
    /// The days from `first` to `last` inclusive; days that the zone skipped are left out.
    DayTable(const Calendar& calendar, std::chrono::local_days first, std::chrono::local_days last);

    /// First instant of each day, strictly increasing.
    [[nodiscard]] const std::vector<Instant>& starts() const
    {
        return m_starts;
    }

    /// Index into `starts` of the local day that holds the instant; nothing outside of the table. Exact also where
    /// the clock falls back across midnight and a stretch of the day before comes again.
    [[nodiscard]] std::optional<std::size_t> indexOf(Instant instant) const;

private:
    /// A stretch of one day; it lasts until the next span begins.
    struct Span {
        Instant begin;
        std::optional<std::size_t> day; ///< nothing for the time before and after the days of the table
    };
    void addSpans(const Calendar& calendar, const std::vector<std::chrono::local_days>& days);

    std::vector<Instant> m_starts;
    std::vector<Span> m_spans; ///< sorted
};

} // namespace tallyfox
