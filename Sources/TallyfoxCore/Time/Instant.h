#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tallyfox {

/// A moment in time, in microseconds since 1970-01-01T00:00:00Z (leap seconds not counted). Every instant in the
/// program is between `distantPast` and `distantFuture`, so that day arithmetic cannot overflow.
using Instant = std::chrono::sys_time<std::chrono::microseconds>;

/// 0001-01-01T00:00:00Z: "never happened".
inline constexpr Instant distantPast{std::chrono::sys_days{std::chrono::year{1} / 1 / 1}};

/// The last microsecond of the year 9999 (UTC).
inline constexpr Instant distantFuture{Instant{std::chrono::sys_days{std::chrono::year{10000} / 1 / 1}}
                                       - std::chrono::microseconds{1}};

/// The instant `seconds` after 1970-01-01T00:00:00Z, rounded to the nearest microsecond. Values outside
/// [`distantPast`, `distantFuture`], infinities included, saturate; not-a-number gives `distantPast`.
Instant instantFromUnixSeconds(double seconds);

/// The instant of an ISO 8601 timestamp in one of two forms:
/// - "2025-03-04T05:06:07Z": without a fraction, and with a zone designator;
/// - "2025-03-04T05:06:07.123Z": with a fraction of any number of digits (truncated to microseconds); without a zone
///   designator it is in UTC.
/// A zone designator is "Z", or "+hh:mm", "-hh:mm", "+hhmm" or "-hhmm". Nothing for any other text, for dates and times
/// that do not exist (30 February, 24:00, second 60), and for instants outside the years 1 to 9999 (UTC).
std::optional<Instant> parseISO8601(std::string_view text);

} // namespace tallyfox
