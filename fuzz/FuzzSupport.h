#pragma once

#include "TallyfoxCore/Usage/TokenSum.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

/// The entry point of a target, for libFuzzer, for AFL++ (whose driver calls the same function), and for replaying the
/// corpus.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Aborts with the broken promise unless it holds.
inline void require(bool holds, const char* promise)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// Thrown where the program would end because token counts overflow: a valid outcome here.
struct TokenSumOverflow { };
