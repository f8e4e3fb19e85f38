#pragma once

#include "TallyfoxCore/Time/Instant.h"
#include "TallyfoxCore/Time/ZoneOffset.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tallyfox {

/// The days of the proleptic Gregorian calendar in one time zone. A value: copies share nothing that changes, so one
/// calendar may serve several threads.
class Calendar {
public:
    /// The stretch that holds a moment between `ZoneOffset::earliest` and `latest`.
    using OffsetAt = std::function<ZoneOffset(std::chrono::sys_seconds)>;

    /// Where the system keeps its zones, and the zone it is set to.
    struct Database {
        std::filesystem::path zones = "/usr/share/zoneinfo";
        std::filesystem::path localTime = "/etc/localtime";
        std::filesystem::path zoneName = "/etc/timezone";
    };

    /// A calendar over any source of offsets; `name` is what `timeZoneName` returns.
    Calendar(std::string name, OffsetAt offsetAt);

    static Calendar utc();

    /// The calendar that a `TZ` value names: a zone of the database, by its name ("Europe/Berlin") or its absolute
    /// path; a rule as POSIX.1 defines it ("CET-1CEST,M3.5.0,M10.5.0/3"); the empty text for UTC. A leading colon
    /// changes nothing. Nothing for a text that is none of these, or a zone whose file is damaged.
    static std::optional<Calendar> named(std::string_view timeZone, const Database& database);
    static std::optional<Calendar> named(std::string_view timeZone);

    /// The calendar of the zone the system is set to, read afresh; nothing where none is set. A zone whose name
    /// cannot be found out is called "localtime".
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

    /// The first instant of a local day: its midnight, or the first instant after a clock change that skips
    /// midnight. Nothing for a day that the zone skipped altogether, and for days outside of the years 0 to 10000.
    [[nodiscard]] std::optional<Instant> startOfDay(std::chrono::local_days day) const;

private:
    std::string m_name;
    OffsetAt m_offsetAt;
};

} // namespace tallyfox
