#pragma once

#include <cstdint>

namespace tallyfox {

/// Ends the program before it shows a wrong figure: prints "tallyfox: stopped: `why`" to standard error and exits with
/// status 1, at once and without clean-up.
[[noreturn]] void stopProgram(const char* why);

/// `a` + `b`; a sum beyond the signed 64-bit range ends the program (`stopProgram`), which takes forged history files.
inline std::int64_t tokenSum(std::int64_t a, std::int64_t b)
{
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        stopProgram("the token counts of the history add up to more than 64 bits hold");
    return sum;
}

} // namespace tallyfox
