#include "TallyfoxCore/Json/JsonScan.h"

namespace tallyfox {

namespace {

constexpr std::ptrdiff_t unicodeEscapeSize = 6;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool isHexDigit(char character)
{
    return isDigit(character) || (character >= 'a' && character <= 'f') || (character >= 'A' && character <= 'F');
}

/// Whether `letter` makes an escape of two characters behind a backslash.
bool isSimpleEscape(char letter)
{
    switch (letter) {
    case '"':
    case '\\':
    case '/':
    case 'b':
    case 'f':
    case 'n':
    case 'r':
    case 't':
        return true;
    default:
        return false;
    }
}

/// The end of the escape whose backslash stands at `from`; null if it is none.
const char* escapeEnd(const char* from, const char* end)
{
    if (end - from < 2)
        return nullptr;
    if (isSimpleEscape(from[1])) [[likely]]
        return from + 2;
    if (end - from < unicodeEscapeSize || from[1] != 'u' || !isHexDigit(from[2]) || !isHexDigit(from[3])
        || !isHexDigit(from[4]) || !isHexDigit(from[5]))
        return nullptr;
    return from + unicodeEscapeSize;
}

/// Steps over the escapes of the block at `from`, whose specials are the bits of `specials`. Stops at the quotation
/// mark that ends the string, or behind the last escape, or at the end of the block; null at what no string may hold.
const char* blockEnd(const char* from, const char* end, std::uint64_t specials)
{
    while (specials != 0) {
        const char* const special = from + std::countr_zero(specials);
        if (*special == '"')
            return special;
        const char* const next = *special == '\\' ? escapeEnd(special, end) : nullptr;
        if (next == nullptr || next >= from + jsonStringBlock)
            return next;
        specials &= ~std::uint64_t{0} << (next - from);
    }
    return from + jsonStringBlock;
}

/// The end of the digits at `from`; null if there is none.
const char* digitsEnd(const char* from, const char* end)
{
    const char* next = from;
    while (next != end && isDigit(*next))
        ++next;
    return next == from ? nullptr : next;
}

} // namespace

const char* jsonScan::longStringEnd(const char* from, const char* end, bool& tookEscape)
{
    while (static_cast<std::size_t>(end - from) >= jsonStringBlock) {
        const std::uint64_t specials = jsonStringSpecials(from);
        if (specials == 0) {
            from += jsonStringBlock;
            continue;
        }
        const char* const next = blockEnd(from, end, specials);
        tookEscape |= from[std::countr_zero(specials)] == '\\';
        if (next == nullptr)
            return nullptr;
        // Inside of the block it can only be the quotation mark.
        if (next < from + jsonStringBlock)
            return next;
        from = next;
    }
    while (static_cast<std::size_t>(end - from) >= byteScan::width) {
        const std::uint64_t specials = byteScan::jsonStringSpecials(from);
        from += specials == 0 ? byteScan::width : static_cast<std::size_t>(std::countr_zero(specials));
        if (specials != 0)
            break;
    }
    while (from != end && *from != '"') {
        if (static_cast<unsigned char>(*from) < 0x20)
            return nullptr;
        const bool isEscape = *from == '\\';
        tookEscape |= isEscape;
        from = isEscape ? escapeEnd(from, end) : from + 1;
        if (from == nullptr)
            return nullptr;
    }
    return from == end ? nullptr : from;
}

const char* jsonScan::anyNumberEnd(const char* from, const char* end)
{
    if (from != end && *from == '-')
        ++from;
    from = from != end && *from == '0' ? from + 1 : digitsEnd(from, end);
    if (from != nullptr && from != end && *from == '.')
        from = digitsEnd(from + 1, end);
    if (from == nullptr || from == end || (*from != 'e' && *from != 'E'))
        return from;
    ++from;
    if (from != end && (*from == '+' || *from == '-'))
        ++from;
    return digitsEnd(from, end);
}

} // namespace tallyfox
