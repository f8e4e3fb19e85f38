#include "TallyfoxCore/Json/JsonReader.h"

#include "TallyfoxCore/Json/JsonScan.h"

#include <array>

namespace tallyfox {

namespace {

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

/// Goes on at `next`, which is null where the text broke the grammar.
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
    if (!take('"') || !goTo(jsonScan::stringEnd(m_next, m_end, m_tookEscape)))
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
    return goTo(jsonScan::numberEnd(m_next, m_end));
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
