#pragma once

#include "TallyfoxCore/Time/Calendar.h"
#include "TallyfoxCore/Time/Instant.h"

#include <chrono>
#include <string>

/// Times as text, in English in every locale.
namespace tallyfox::DateText {

/// "2026-11-21T09:41:07.123Z": ISO 8601 in UTC, the milliseconds rounded down.
std::string isoInstant(Instant instant);

/// "2026-11-21"
std::string isoDay(std::chrono::local_days day);

/// "21 Nov 2026, 10:41": day and time in the calendar's zone.
std::string localDayAndTime(Instant instant, const Calendar& calendar);

/// As short as `now` allows: "13:00" today, "24 Nov, 13:00" this year, else "24 Nov 2027, 13:00".
std::string localMoment(Instant instant, Instant now, const Calendar& calendar);

/// The time from `now`, in its two largest units: "in 2 h 5 min", "in 3 d 4 h", "in less than 1 min"; "5 min ago" for
/// the past. Minutes are rounded down.
std::string relative(Instant instant, Instant now);

} // namespace tallyfox::DateText
