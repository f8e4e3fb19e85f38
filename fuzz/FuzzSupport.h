#pragma once

#include "TallyfoxCore/Usage/TokenSum.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

/// What a target is for libFuzzer, for AFL++ (whose driver calls the same function), and for the replay of the corpus.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Stops the fuzzer with the broken promise.
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

/// Thrown where the program would end because token counts overflow: an outcome like any other here.
struct TokenSumOverflow { };
