#pragma once

#include <bit>
#include <cstddef>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Searches that look at sixteen bytes at a time, with the vector types that GCC and Clang offer on every processor.
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

/// Index of the first byte whose lane of `mask` is set; `width` if none is.
template <typename Mask> inline std::size_t firstSet(Mask mask)
{
    const auto bits = static_cast<unsigned>(_mm_movemask_epi8(reinterpret_cast<__m128i>(mask)));
    return static_cast<std::size_t>(std::countr_zero(bits | (1U << width)));
}

#else

template <typename Mask> inline std::size_t firstSet(Mask mask)
{
    std::size_t index = 0;
    while (index < width && mask[index] == 0)
        ++index;
    return index;
}

#endif

} // namespace byteScan

/// Position at or after `from` of the first byte that a JSON string cannot hold as it is: a quotation mark, a
/// backslash or a control character; the size of the text if there is none.
inline std::size_t findJsonStringSpecial(std::string_view text, std::size_t from)
{
    while (from + byteScan::width <= text.size()) {
        const byteScan::Bytes block = byteScan::load(text.data() + from);
        const std::size_t found = byteScan::firstSet((block == '"') | (block == '\\') | (block < 0x20));
        if (found < byteScan::width)
            return from + found;
        from += byteScan::width;
    }
    while (from < text.size() && text[from] != '"' && text[from] != '\\'
           && static_cast<unsigned char>(text[from]) >= 0x20)
        ++from;
    return from;
}

/// Position at or after `from` of the first byte that is not ASCII; the size of the text if there is none.
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
