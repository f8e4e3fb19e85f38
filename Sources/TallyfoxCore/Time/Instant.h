#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace tallyfox {

/// A moment in time, in microseconds since 1970-01-01T00:00:00Z (leap seconds not counted). Every instant of the
/// program lies between `distantPast` and `distantFuture`, so that day arithmetic on it can never overflow.
using Instant = std::chrono::sys_time<std::chrono::microseconds>;

/// 0001-01-01T00:00:00Z: "never happened".
inline constexpr Instant distantPast{std::chrono::sys_days{std::chrono::year{1} / 1 / 1}};

/// The last microsecond of the year 9999 (UTC).
inline constexpr Instant distantFuture{Instant{std::chrono::sys_days{std::chrono::year{10000} / 1 / 1}}
                                       - std::chrono::microseconds{1}};

/// The instant `seconds` after 1970-01-01T00:00:00Z, rounded to the nearest microsecond. Values outside of
/// [`distantPast`, `distantFuture`], infinities included, saturate; not-a-number gives `distantPast`.
Instant instantFromUnixSeconds(double seconds);

} // namespace tallyfox
