#include "TallyfoxCore/JsonReader.h"

#include "TallyfoxCore/Platform/ByteScan.h"

#include <array>
#include <bit>

namespace tallyfox {

namespace {

constexpr std::size_t unicodeEscapeSize = 6;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
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

bool isHexDigit(char character)
{
    return isDigit(character) || (character >= 'a' && character <= 'f') || (character >= 'A' && character <= 'F');
}

/// The type of the value that begins with a byte.
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

bool JsonReader::takeEscape()
{
    m_tookEscape = true;
    if (left() < 2)
        return fail();
    if (isSimpleEscape(m_next[1])) [[likely]] {
        m_next += 2;
        return true;
    }
    if (left() < unicodeEscapeSize || m_next[1] != 'u' || !isHexDigit(m_next[2]) || !isHexDigit(m_next[3])
        || !isHexDigit(m_next[4]) || !isHexDigit(m_next[5]))
        return fail();
    m_next += unicodeEscapeSize;
    return true;
}

/// Steps over the escapes of one block whose specials are the bits of `specials`. Stops at the quotation mark that ends
/// the string, or behind the last escape, or at the end of the block; false at what no string may hold.
inline bool JsonReader::takeBlock(std::uint64_t specials)
{
    const char* const begin = m_next;
    while (specials != 0) {
        m_next = begin + std::countr_zero(specials);
        if (*m_next == '"')
            return true;
        if (*m_next != '\\')
            return fail();
        if (!takeEscape())
            return false;
        if (m_next >= begin + jsonStringBlock)
            return true;
        specials &= ~std::uint64_t{0} << (m_next - begin);
    }
    m_next = begin + jsonStringBlock;
    return true;
}

bool JsonReader::takeLongStringText()
{
    while (left() >= jsonStringBlock) {
        const std::uint64_t specials = jsonStringSpecials(m_next);
        if (!takeBlock(specials))
            return false;
        if (specials != 0 && peek() == '"')
            return true;
    }
    while (!atEnd() && *m_next != '"') {
        if (static_cast<unsigned char>(*m_next) < 0x20)
            return fail();
        if (*m_next != '\\')
            ++m_next;
        else if (!takeEscape())
            return false;
    }
    return !atEnd() || fail();
}

/// Stops at the quotation mark that ends the string whose text begins here.
inline bool JsonReader::takeStringText()
{
    // Most strings are keys and short values: they end within the first bytes, without an escape before.
    if (left() >= byteScan::width) {
        const std::uint64_t specials = byteScan::jsonStringSpecials(m_next);
        const char* const first = m_next + std::countr_zero(specials | (std::uint64_t{1} << 63));
        if (specials != 0 && *first == '"') {
            m_next = first;
            return true;
        }
    }
    return takeLongStringText();
}

inline bool JsonReader::takeString()
{
    m_atFirstMember = false;
    if (!take('"') || !takeStringText())
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

bool JsonReader::readNull()
{
    skipWhiteSpace();
    m_atFirstMember = false;
    return takeLiteral("null");
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

inline bool JsonReader::takeDigits()
{
    if (!isDigit(peek()))
        return fail();
    while (isDigit(peek()))
        ++m_next;
    return true;
}

bool JsonReader::takeNumber()
{
    m_atFirstMember = false;
    if (peek() == '-')
        ++m_next;
    if (peek() == '0')
        ++m_next;
    else if (!takeDigits())
        return false;
    if (peek() == '.') {
        ++m_next;
        if (!takeDigits())
            return false;
    }
    if (peek() == 'e' || peek() == 'E') {
        ++m_next;
        if (peek() == '+' || peek() == '-')
            ++m_next;
        return takeDigits();
    }
    return true;
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

/// Closes every container that ends here, down to `outerDepth`, then steps over what stands before the next value of
/// the innermost one left.
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
