#pragma once

#include "TallyfoxCore/Time/Calendar.h"

#include <chrono>
#include <optional>
#include <string_view>

namespace tallyfox {

/// A time zone written as a rule: the POSIX.1 text of the `TZ` variable ("CET-1CEST,M3.5.0,M10.5.0/3"), with the
/// wider range of times (-167 to 167 hours) that zone files use in their last line.
class TimeZoneRule {
public:
    /// The rule in `text`; nothing if it is not a complete rule. A zone with a summer time but no dates for it uses
    /// those of the United States, as the C library does.
    static std::optional<TimeZoneRule> parse(std::string_view text);

    /// The stretch that holds `time`, which must be between `ZoneOffset::earliest` and `latest`.
    [[nodiscard]] ZoneOffset offsetAt(std::chrono::sys_seconds time) const;

private:
    friend class TimeZoneRuleReader;

    /// A yearly clock change, in local time.
    struct Change {
        enum class Kind { monthWeekday, dayWithoutLeapDay, dayOfYear };
        Kind kind = Kind::monthWeekday;
        unsigned month = 1; ///< 1…12, of `monthWeekday` alone
        unsigned week = 1; ///< 1…5, 5 meaning the last, of `monthWeekday` alone
        unsigned day = 0; ///< weekday 0…6 from Sunday, day 1…365 never counting 29 February, or day 0…365
        std::chrono::seconds time = std::chrono::hours{2}; ///< since the midnight of that day

        [[nodiscard]] std::chrono::local_seconds in(std::chrono::year year) const;
    };
    struct SummerTime {
        std::chrono::seconds offset{};
        Change begin;
        Change end;
    };

    std::chrono::seconds m_standard{};
    std::optional<SummerTime> m_summer;
};

} // namespace tallyfox
