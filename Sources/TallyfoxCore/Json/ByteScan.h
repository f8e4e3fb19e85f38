#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Searches sixteen bytes at a time, using the vector extensions of GCC and Clang, which exist for every processor.
namespace tallyfox {

namespace byteScan {

using Bytes [[gnu::vector_size(16)]] = unsigned char;

inline constexpr std::size_t width = sizeof(Bytes);

inline Bytes load(const char* bytes)
{
    Bytes block;
    std::memcpy(&block, bytes, width);
    return block;
}

#if defined(__SSE2__)

/// One bit for each lane of `mask`, lowest first: whether it is set.
template <typename Mask> inline std::uint64_t bits(Mask mask)
{
    return static_cast<unsigned>(_mm_movemask_epi8(reinterpret_cast<__m128i>(mask)));
}

#else

template <typename Mask> inline std::uint64_t bits(Mask mask)
{
    std::uint64_t result = 0;
    for (std::size_t index = 0; index < width; ++index)
        result |= std::uint64_t{mask[index] != 0} << index;
    return result;
}

#endif

/// Index of the first set lane of `mask`; `width` if none is set.
template <typename Mask> inline std::size_t firstSet(Mask mask)
{
    return static_cast<std::size_t>(std::countr_zero(bits(mask) | (std::uint64_t{1} << width)));
}

/// One bit for each of sixteen bytes: whether a JSON string cannot hold it unescaped.
inline std::uint64_t jsonStringSpecials(const char* bytes)
{
    const Bytes block = load(bytes);
    return bits((block == '"') | (block == '\\') | (block < 0x20));
}

/// One bit for each of sixteen bytes: whether it is not a decimal digit.
inline std::uint64_t nonDigits(const char* bytes)
{
    const Bytes block = load(bytes);
    return bits((block - '0') > 9);
}

} // namespace byteScan

/// Position of the first non-ASCII byte at or after `from`; the size of the text if there is none.
inline std::size_t findNonAscii(std::string_view text, std::size_t from)
{
    while (from + byteScan::width <= text.size()) {
        const std::size_t found = byteScan::firstSet(byteScan::load(text.data() + from) > 0x7F);
        if (found < byteScan::width)
            return from + found;
        from += byteScan::width;
    }
    while (from < text.size() && static_cast<unsigned char>(text[from]) < 0x80)
        ++from;
    return from;
}

} // namespace tallyfox
