#pragma once

#include "TallyfoxCore/Time/Instant.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
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
    std::chrono::seconds offset{}; ///< local time minus UTC, between -`largest` and `largest`

    /// The largest offset accepted; data with a larger one are refused.
    static constexpr std::chrono::hours largest{26};
    /// The bounds of every stretch: two years beyond those of instants, so that there are days for a year before and
    /// after every instant.
    static constexpr std::chrono::sys_seconds earliest{std::chrono::sys_days{std::chrono::year{-1} / 1 / 1}};
    static constexpr std::chrono::sys_seconds latest{std::chrono::sys_days{std::chrono::year{10002} / 1 / 1}};

    /// A stretch without end.
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

/// The days of the proleptic Gregorian calendar in one time zone. A value that is safe to use from several threads:
/// copies share nothing mutable.
class Calendar {
public:
    /// The stretch that holds a moment between `ZoneOffset::earliest` and `latest`.
    using OffsetAt = std::function<ZoneOffset(std::chrono::sys_seconds)>;

    /// Where the system keeps its zones and its own setting.
    struct Database {
        std::filesystem::path zones = "/usr/share/zoneinfo";
        std::filesystem::path localTime = "/etc/localtime";
        std::filesystem::path zoneName = "/etc/timezone";
    };

    /// A calendar over any source of offsets, for a zone called `name`.
    Calendar(std::string name, OffsetAt offsetAt);

    static Calendar utc();

    /// The calendar that a `TZ` value names: a zone of the database, by its name ("Europe/Berlin") or its absolute
    /// path; a rule as POSIX.1 defines it ("CET-1CEST,M3.5.0,M10.5.0/3"); the empty text for UTC. A leading colon
    /// is ignored. Nothing for any other text, and for a zone whose file is damaged.
    static std::optional<Calendar> named(std::string_view timeZone, const Database& database);
    static std::optional<Calendar> named(std::string_view timeZone);

    /// The calendar of the system's zone, read anew at each call; nothing where none is set. A zone whose name cannot
    /// be found is called "localtime".
    static std::optional<Calendar> ofSystem(const Database& database);
    static std::optional<Calendar> ofSystem();

    [[nodiscard]] const std::string& timeZoneName() const
    {
        return m_name;
    }

    /// The stretch that holds an instant.
    [[nodiscard]] ZoneOffset offsetAt(Instant instant) const;

    /// The local date of an instant.
    [[nodiscard]] std::chrono::local_days dayOf(Instant instant) const;

    /// The first instant of a local day: midnight, or the end of the clock change that skips midnight. Nothing for a
    /// day that the zone skipped, and for days outside the years 0 to 10000.
    [[nodiscard]] std::optional<Instant> startOfDay(std::chrono::local_days day) const;

private:
    std::string m_name;
    OffsetAt m_offsetAt;
};

/// A range of local days, laid out for finding the day of an instant by binary search.
class DayTable {
public:
    /// The days from `first` to `last` inclusive; days that the zone skipped are left out.
    DayTable(const Calendar& calendar, std::chrono::local_days first, std::chrono::local_days last);

    /// First instant of each day, strictly increasing.
    [[nodiscard]] const std::vector<Instant>& starts() const
    {
        return m_starts;
    }

    /// Index into `starts` of the local day that holds the instant; nothing outside the table. Exact also where the
    /// clock falls back across midnight, so that a part of the day before repeats.
    [[nodiscard]] std::optional<std::size_t> indexOf(Instant instant) const;

private:
    /// A stretch of one day; it lasts until the next span begins.
    struct Span {
        Instant begin;
        std::optional<std::size_t> day; ///< nothing for time outside the table
    };
    void addSpans(const Calendar& calendar, const std::vector<std::chrono::local_days>& days);

    std::vector<Instant> m_starts;
    std::vector<Span> m_spans; ///< sorted
};

} // namespace tallyfox
