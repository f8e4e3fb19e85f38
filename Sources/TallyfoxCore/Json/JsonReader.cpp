#include "TallyfoxCore/Json/JsonReader.h"

#include "TallyfoxCore/Json/ByteScan.h"

#include <array>
#include <bit>
#include <cstdint>

namespace tallyfox {

namespace {

/// The type of a value by its first byte.
constexpr std::array<JsonReader::Type, 256> typesByFirstByte = [] {
    using enum JsonReader::Type;
    std::array<JsonReader::Type, 256> types{};
    types.fill(none);
    for (unsigned char digit = '0'; digit <= '9'; ++digit)
        types[digit] = number;
    types['-'] = number;
    types['"'] = string;
    types['{'] = object;
    types['['] = array;
    types['n'] = null;
    types['t'] = boolean;
    types['f'] = boolean;
    return types;
}();

constexpr std::ptrdiff_t unicodeEscapeSize = 6;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool isHexDigit(char character)
{
    return isDigit(character) || (character >= 'a' && character <= 'f') || (character >= 'A' && character <= 'F');
}

/// Whether a backslash and `letter` are an escape.
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

/// The end of the escape whose backslash is at `from`; null if it is invalid.
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

/// The end of the digits at `from`; null if there are none.
const char* digitsEnd(const char* from, const char* end)
{
    const char* next = from;
    while (next != end && isDigit(*next))
        ++next;
    return next == from ? nullptr : next;
}

/// The first byte at or after `from` that a string cannot hold unescaped; `end` if there is none.
const char* findSpecial(const char* from, const char* end)
{
    while (static_cast<std::size_t>(end - from) >= byteScan::width) {
        const std::uint64_t specials = byteScan::jsonStringSpecials(from);
        if (specials != 0)
            return from + std::countr_zero(specials);
        from += byteScan::width;
    }
    while (from != end && *from != '"' && *from != '\\' && static_cast<unsigned char>(*from) >= 0x20)
        ++from;
    return from;
}

/// `stringEnd` for strings of any length.
const char* longStringEnd(const char* from, const char* end, bool& tookEscape)
{
    for (from = findSpecial(from, end); from != end && *from == '\\'; from = findSpecial(from, end)) {
        tookEscape = true;
        from = escapeEnd(from, end);
        if (from == nullptr)
            return nullptr;
    }
    return from != end && *from == '"' ? from : nullptr;
}

/// The quotation mark that ends the string whose text begins at `from`; null if the string is invalid or unfinished.
/// Sets `tookEscape` if the string has an escape, else leaves it unchanged.
const char* stringEnd(const char* from, const char* end, bool& tookEscape)
{
    // Most strings are keys and short values: they end within the first bytes and have no escape.
    if (static_cast<std::size_t>(end - from) >= byteScan::width) {
        const std::uint64_t specials = byteScan::jsonStringSpecials(from);
        const char* const first = from + std::countr_zero(specials | (std::uint64_t{1} << 63));
        if (specials != 0 && *first == '"')
            return first;
    }
    return longStringEnd(from, end, tookEscape);
}

/// `numberEnd` for all numbers.
const char* anyNumberEnd(const char* from, const char* end)
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

/// The end of the number that begins at `from`; null if it is invalid.
const char* numberEnd(const char* from, const char* end)
{
    // Most numbers are plain digits.
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

} // namespace

bool JsonReader::fail()
{
    m_hasFailed = true;
    m_next = m_end;
    return false;
}

inline void JsonReader::skipWhiteSpace()
{
    while (!atEnd() && (*m_next == ' ' || *m_next == '\n' || *m_next == '\r' || *m_next == '\t'))
        [[unlikely]]++ m_next;
}

inline bool JsonReader::take(char character)
{
    if (peek() != character || atEnd())
        return fail();
    ++m_next;
    return true;
}

bool JsonReader::takeLiteral(std::string_view literal)
{
    if (!std::string_view(m_next, left()).starts_with(literal))
        return fail();
    m_next += literal.size();
    return true;
}

JsonReader::Type JsonReader::nextType()
{
    skipWhiteSpace();
    return typesByFirstByte[static_cast<unsigned char>(peek())];
}

inline bool JsonReader::open(Type container)
{
    if (m_depth == maximumDepth)
        return fail();
    ++m_next;
    m_isObject[m_depth++] = container == Type::object;
    m_atFirstMember = true;
    return true;
}

inline void JsonReader::close()
{
    ++m_next;
    --m_depth;
    m_atFirstMember = false;
}

bool JsonReader::beginObject()
{
    return nextType() == Type::object ? open(Type::object) : fail();
}

/// Continues at `next`; fails if that is null.
inline bool JsonReader::goTo(const char* next)
{
    if (next == nullptr)
        return fail();
    m_next = next;
    return true;
}

inline bool JsonReader::takeString()
{
    m_atFirstMember = false;
    if (!take('"') || !goTo(stringEnd(m_next, m_end, m_tookEscape)))
        return false;
    ++m_next;
    return true;
}

bool JsonReader::nextMember(JsonString& key)
{
    skipWhiteSpace();
    if (peek() == '}') {
        close();
        return false;
    }
    if (!m_atFirstMember && !take(','))
        return false;
    if (!readString(key))
        return false;
    skipWhiteSpace();
    return take(':');
}

bool JsonReader::readString(JsonString& string)
{
    skipWhiteSpace();
    m_tookEscape = false;
    const char* const begin = m_next;
    if (!takeString())
        return false;
    string.raw = std::string_view(begin + 1, static_cast<std::size_t>(m_next - begin) - 2);
    string.hasEscapes = m_tookEscape;
    return true;
}

inline bool JsonReader::takeNumber()
{
    return goTo(numberEnd(m_next, m_end));
}

bool JsonReader::readNumber(JsonNumber& number)
{
    skipWhiteSpace();
    const char* const begin = m_next;
    if (!takeNumber())
        return false;
    number.raw = std::string_view(begin, static_cast<std::size_t>(m_next - begin));
    return true;
}

inline bool JsonReader::takeScalar(Type type)
{
    m_atFirstMember = false;
    switch (type) {
    case Type::string:
        return takeString();
    case Type::number:
        return takeNumber();
    case Type::null:
        return takeLiteral("null");
    case Type::boolean:
        return takeLiteral(*m_next == 't' ? "true" : "false");
    default:
        return fail();
    }
}

inline bool JsonReader::takeMemberKey()
{
    skipWhiteSpace();
    if (!takeString())
        return false;
    skipWhiteSpace();
    return take(':');
}

/// Closes every container that ends here, down to `outerDepth`, then skips what precedes the next value of the
/// innermost one that is still open.
inline bool JsonReader::stepToNextValue(std::size_t outerDepth)
{
    skipWhiteSpace();
    while (m_depth > outerDepth && peek() == (m_isObject[m_depth - 1] ? '}' : ']')) {
        close();
        skipWhiteSpace();
    }
    if (m_depth == outerDepth)
        return true;
    if (!m_atFirstMember && !take(','))
        return false;
    return !m_isObject[m_depth - 1] || takeMemberKey();
}

bool JsonReader::skipValue()
{
    const std::size_t outerDepth = m_depth;
    do {
        const Type type = nextType();
        const bool isContainer = type == Type::object || type == Type::array;
        if (!(isContainer ? open(type) : takeScalar(type)))
            return false;
        if (m_depth > outerDepth && !stepToNextValue(outerDepth))
            return false;
    } while (m_depth > outerDepth);
    return true;
}

bool JsonReader::finish()
{
    skipWhiteSpace();
    return !m_hasFailed && atEnd() && m_depth == 0;
}

} // namespace tallyfox
