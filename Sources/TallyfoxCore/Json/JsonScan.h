#pragma once

#include "TallyfoxCore/Json/ByteScan.h"

#include <bit>
#include <cstddef>
#include <cstdint>

/// Where the tokens of a JSON text end. No function reads at or beyond `end`.
namespace tallyfox::jsonScan {

/// `stringEnd` for strings of any length, block by block.
const char* longStringEnd(const char* from, const char* end, bool& tookEscape);

/// The quotation mark that ends the string whose text begins at `from`; null if there is none, or something that no
/// string may hold before it. Sets `tookEscape` if the text has an escape, and leaves it as it is if not.
inline const char* stringEnd(const char* from, const char* end, bool& tookEscape)
{
    // Most strings are keys and short values: they end within the first bytes, without an escape before.
    if (static_cast<std::size_t>(end - from) >= byteScan::width) {
        const std::uint64_t specials = byteScan::jsonStringSpecials(from);
        const char* const first = from + std::countr_zero(specials | (std::uint64_t{1} << 63));
        if (specials != 0 && *first == '"')
            return first;
    }
    return longStringEnd(from, end, tookEscape);
}

/// Whether a string whose text begins at `from` ends after `size` bytes and has no escape. False as well where there
/// are few bytes behind it.
inline bool isStringOfSize(std::size_t size, const char* from, const char* end)
{
    using byteScan::width;
    if (static_cast<std::size_t>(end - from) < size + width)
        return false;
    std::size_t done = 0;
    for (; done + width <= size; done += width) {
        if (byteScan::jsonStringSpecials(from + done) != 0)
            return false;
    }
    const std::uint64_t specials = byteScan::jsonStringSpecials(from + done);
    const std::uint64_t closing = std::uint64_t{1} << (size - done);
    return (specials & (2 * closing - 1)) == closing && from[size] == '"';
}

/// `numberEnd` for all numbers.
const char* anyNumberEnd(const char* from, const char* end);

/// The end of the number that begins at `from`; null if none does.
inline const char* numberEnd(const char* from, const char* end)
{
    // Most numbers are some digits and nothing else.
    if (static_cast<std::size_t>(end - from) >= byteScan::width) {
        const std::uint64_t others = byteScan::nonDigits(from);
        const std::ptrdiff_t digits = std::countr_zero(others | (std::uint64_t{1} << 63));
        const char behind = from[others != 0 ? digits : 0];
        const bool isGrammatical = others != 0 && digits != 0 && (*from != '0' || digits == 1);
        if (isGrammatical && behind != '.' && behind != 'e' && behind != 'E')
            return from + digits;
    }
    return anyNumberEnd(from, end);
}

} // namespace tallyfox::jsonScan
