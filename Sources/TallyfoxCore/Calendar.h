#pragma once

#include "TallyfoxCore/Instant.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallyfox {

/// A stretch of time during which a zone keeps one offset from UTC.
struct ZoneOffset {
    std::chrono::sys_seconds begin; ///< first second of the stretch
    std::chrono::sys_seconds end; ///< first second after it
    std::chrono::seconds offset{}; ///< local time minus UTC
};

/// The days of the proleptic Gregorian calendar in one time zone. A value: copies share nothing that changes.
class Calendar {
public:
    /// The stretch that holds an instant.
    using OffsetAt = std::function<ZoneOffset(std::chrono::sys_seconds)>;

    /// A calendar over any source of offsets; `name` is what `timeZoneName` returns.
    Calendar(std::string name, OffsetAt offsetAt);

    static Calendar utc();

    /// The calendar that a `TZ` value names: a zone of the system's database ("Europe/Berlin", also with a leading
    /// colon) or a rule as POSIX.1 defines it ("CET-1CEST,M3.5.0,M10.5.0/3"). Nothing for a text that is neither.
    static std::optional<Calendar> named(std::string_view timeZone);

    /// The calendar of the system's configured zone; nothing where none is configured.
    static std::optional<Calendar> ofSystem();

    [[nodiscard]] const std::string& timeZoneName() const
    {
        return m_name;
    }

    [[nodiscard]] ZoneOffset offsetAt(Instant instant) const;

    /// The local date of an instant.
    [[nodiscard]] std::chrono::local_days dayOf(Instant instant) const;

    /// The first instant of a local day: its midnight, or the first instant after a clock change that skips
    /// midnight. Nothing for a day that the zone skipped altogether.
    [[nodiscard]] std::optional<Instant> startOfDay(std::chrono::local_days day) const;

private:
    std::string m_name;
    OffsetAt m_offsetAt;
};

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
    struct Span {
        Instant begin;
        std::optional<std::size_t> day; ///< nothing for the time before and after the days of the table
    };
    std::vector<Instant> m_starts;
    std::vector<Span> m_spans; ///< sorted; each lasts until the next begins
};

} // namespace tallyfox
