#include "TallyfoxCore/JsonReader.h"

#include "TallyfoxCore/Platform/ByteScan.h"

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

} // namespace

bool JsonReader::fail()
{
    m_hasFailed = true;
    m_position = m_text.size();
    return false;
}

void JsonReader::skipWhiteSpace()
{
    while (!atEnd()) {
        const char character = m_text[m_position];
        if (character != ' ' && character != '\n' && character != '\r' && character != '\t')
            return;
        ++m_position;
    }
}

bool JsonReader::take(char character)
{
    if (atEnd() || m_text[m_position] != character)
        return fail();
    ++m_position;
    return true;
}

bool JsonReader::takeLiteral(std::string_view literal)
{
    if (m_text.substr(m_position, literal.size()) != literal)
        return fail();
    m_position += literal.size();
    return true;
}

JsonReader::Type JsonReader::nextType()
{
    skipWhiteSpace();
    switch (peek()) {
    case 'n':
        return Type::null;
    case 't':
    case 'f':
        return Type::boolean;
    case '"':
        return Type::string;
    case '{':
        return Type::object;
    case '[':
        return Type::array;
    default:
        return peek() == '-' || isDigit(peek()) ? Type::number : Type::none;
    }
}

bool JsonReader::open(Type container)
{
    if (m_depth == maximumDepth)
        return fail();
    ++m_position;
    m_isObject[m_depth++] = container == Type::object;
    m_atFirstMember = true;
    return true;
}

bool JsonReader::close()
{
    ++m_position;
    --m_depth;
    m_atFirstMember = false;
    return true;
}

bool JsonReader::beginObject()
{
    return nextType() == Type::object ? open(Type::object) : fail();
}

bool JsonReader::nextMember(JsonString& key)
{
    skipWhiteSpace();
    if (peek() == '}') {
        close();
        return false;
    }
    if (!m_atFirstMember) {
        if (!take(','))
            return false;
        skipWhiteSpace();
    }
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

bool JsonReader::takeEscape()
{
    m_tookEscape = true;
    if (m_position + 1 == m_text.size())
        return fail();
    if (isSimpleEscape(m_text[m_position + 1])) [[likely]] {
        m_position += 2;
        return true;
    }
    const std::string_view escape = m_text.substr(m_position, unicodeEscapeSize);
    if (escape.size() < unicodeEscapeSize || escape[1] != 'u' || !isHexDigit(escape[2]) || !isHexDigit(escape[3])
        || !isHexDigit(escape[4]) || !isHexDigit(escape[5]))
        return fail();
    m_position += unicodeEscapeSize;
    return true;
}

/// Steps over the escapes of one block whose specials are the bits of `specials`. Stops at the quotation mark that ends
/// the string, or behind the last escape, or at the end of the block; false at what no string may hold.
bool JsonReader::takeBlock(std::uint64_t specials)
{
    const std::size_t begin = m_position;
    while (specials != 0) {
        m_position = begin + static_cast<std::size_t>(std::countr_zero(specials));
        if (m_text[m_position] == '"')
            return true;
        if (m_text[m_position] != '\\')
            return fail();
        if (!takeEscape())
            return false;
        if (m_position >= begin + jsonStringBlock)
            return true;
        specials &= ~std::uint64_t{0} << (m_position - begin);
    }
    m_position = begin + jsonStringBlock;
    return true;
}

/// Stops at the quotation mark that ends the string whose text begins here.
bool JsonReader::skipStringText()
{
    while (m_position + jsonStringBlock <= m_text.size()) {
        const std::uint64_t specials = jsonStringSpecials(m_text.data() + m_position);
        if (!takeBlock(specials))
            return false;
        if (specials != 0 && peek() == '"')
            return true;
    }
    while (!atEnd() && peek() != '"') {
        if (static_cast<unsigned char>(peek()) < 0x20)
            return fail();
        if (peek() != '\\')
            ++m_position;
        else if (!takeEscape())
            return false;
    }
    return !atEnd() || fail();
}

bool JsonReader::readString(JsonString& string)
{
    skipWhiteSpace();
    m_atFirstMember = false;
    if (!take('"'))
        return false;
    const std::size_t begin = m_position;
    m_tookEscape = false;
    if (!skipStringText())
        return false;
    string.raw = m_text.substr(begin, m_position - begin);
    string.hasEscapes = m_tookEscape;
    ++m_position;
    return true;
}

bool JsonReader::takeDigits()
{
    if (!isDigit(peek()))
        return fail();
    while (isDigit(peek()))
        ++m_position;
    return true;
}

bool JsonReader::readNumber(JsonNumber& number)
{
    skipWhiteSpace();
    m_atFirstMember = false;
    const std::size_t begin = m_position;
    if (peek() == '-')
        ++m_position;
    if (peek() == '0')
        ++m_position;
    else if (!takeDigits())
        return false;
    if (peek() == '.') {
        ++m_position;
        if (!takeDigits())
            return false;
    }
    if (peek() == 'e' || peek() == 'E') {
        ++m_position;
        if (peek() == '+' || peek() == '-')
            ++m_position;
        if (!takeDigits())
            return false;
    }
    number.raw = m_text.substr(begin, m_position - begin);
    return true;
}

bool JsonReader::skipScalar(Type type)
{
    m_atFirstMember = false;
    JsonString string;
    JsonNumber number;
    switch (type) {
    case Type::null:
        return takeLiteral("null");
    case Type::boolean:
        return takeLiteral(peek() == 't' ? "true" : "false");
    case Type::string:
        return readString(string);
    case Type::number:
        return readNumber(number);
    default:
        return fail();
    }
}

bool JsonReader::skipMemberKey()
{
    JsonString key;
    if (!readString(key))
        return false;
    skipWhiteSpace();
    return take(':');
}

/// Closes every container that ends here, down to `outerDepth`, then steps over what stands before the next value of
/// the innermost one left.
bool JsonReader::skipToNextValueOfContainers(std::size_t outerDepth)
{
    skipWhiteSpace();
    while (m_depth > outerDepth && peek() == (m_isObject[m_depth - 1] ? '}' : ']')) {
        close();
        skipWhiteSpace();
    }
    if (m_depth == outerDepth)
        return true;
    if (!m_atFirstMember) {
        if (!take(','))
            return false;
        skipWhiteSpace();
    }
    return !m_isObject[m_depth - 1] || skipMemberKey();
}

bool JsonReader::skipValue()
{
    const std::size_t outerDepth = m_depth;
    do {
        const Type type = nextType();
        const bool isContainer = type == Type::object || type == Type::array;
        if (!(isContainer ? open(type) : skipScalar(type)))
            return false;
        if (m_depth > outerDepth && !skipToNextValueOfContainers(outerDepth))
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
