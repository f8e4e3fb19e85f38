#pragma once

namespace tallyfox {

/// Ends the program: the highest quota percentage is not finite, or has no counterpart among the signed 64-bit
/// integers. It says so in one line on standard error and exits with status 1, at once and without clean-up.
[[noreturn]] void stopBecausePercentIsNoInteger();

/// Ends the program in the same manner: a refresh interval in minutes has more seconds than 64 bits hold.
[[noreturn]] void stopBecauseRefreshIntervalOverflows();

/// Ends the program in the same manner: the yearly series of one provider has fewer days than that of the first, so
/// that the days of the two cannot be added up.
[[noreturn]] void stopBecauseDailySeriesDiffer();

} // namespace tallyfox
