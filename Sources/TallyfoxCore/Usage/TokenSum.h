#pragma once

#include <cstdint>

namespace tallyfox {

/// Ends the program: token counts add up to more than 64 bits hold. It says so in one line on standard error and
/// exits with status 1, at once and without clean-up, so that no wrong figure is ever shown. Only history files
/// that were written to provoke it lead here.
[[noreturn]] void stopBecauseTokenSumOverflows();

/// `a` + `b`; a sum outside of the signed 64-bit range ends the program (`stopBecauseTokenSumOverflows`).
inline std::int64_t tokenSum(std::int64_t a, std::int64_t b)
{
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        stopBecauseTokenSumOverflows();
    return sum;
}

} // namespace tallyfox
