#pragma once

#include "TallyfoxCore/Platform/ByteScan.h"

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

/// The end of the number that begins at `from`; null if none does.
const char* numberEnd(const char* from, const char* end);

} // namespace tallyfox::jsonScan
