#include "TallyfoxCore/Json/JsonToken.h"

#include "TallyfoxCore/Json/ByteScan.h"
#include "TallyfoxCore/Json/Utf8.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace tallyfox {

namespace {

constexpr char32_t replacementCharacter = U'\uFFFD';

/// Reads a grammatical JSON string code unit by code unit.
class CodeUnits {
public:
    explicit CodeUnits(std::string_view raw)
        : m_raw(raw)
    { }

    [[nodiscard]] bool atEnd() const
    {
        return m_position == m_raw.size();
    }
    [[nodiscard]] bool atUnicodeEscape() const
    {
        return m_raw.size() - m_position >= 6 && m_raw[m_position] == '\\' && m_raw[m_position + 1] == 'u';
    }

    /// The value of the unicode escape at the position; does not advance.
    [[nodiscard]] char32_t unicodeEscape() const
    {
        unsigned value = 0;
        const char* const digits = m_raw.data() + m_position + 2;
        std::from_chars(digits, digits + 4, value, 16);
        return value;
    }
    void skipUnicodeEscape()
    {
        m_position += 6;
    }

    /// The byte that a plain character or a two-character escape means.
    char nextByte()
    {
        const char byte = m_raw[m_position++];
        return byte == '\\' ? unescaped(m_raw[m_position++]) : byte;
    }

private:
    static char unescaped(char letter)
    {
        switch (letter) {
        case 'b':
            return '\b';
        case 'f':
            return '\f';
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        default:
            return letter;
        }
    }

    std::string_view m_raw;
    std::size_t m_position = 0;
};

bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// The code point that begins with the unicode escape at the position.
char32_t nextEscapedCodePoint(CodeUnits& units)
{
    const char32_t first = units.unicodeEscape();
    units.skipUnicodeEscape();
    if (isLowSurrogate(first))
        return replacementCharacter;
    if (!isHighSurrogate(first))
        return first;
    if (!units.atUnicodeEscape() || !isLowSurrogate(units.unicodeEscape()))
        return replacementCharacter;
    const char32_t second = units.unicodeEscape();
    units.skipUnicodeEscape();
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

/// A decimal number: its digits without leading and trailing zeros, times ten to the power of `exponent`.
struct Decimal {
    bool isNegative = false;
    std::string_view digits; ///< from the first to the last that is not zero; may hold the decimal point
    std::int64_t digitCount = 0; ///< without the decimal point; 0 for zero
    std::int64_t exponent = 0; ///< of the last digit
};

/// The exponent after the letter e, clamped so that no digit count reaches the bound and no sum here overflows.
std::int64_t exponentValue(std::string_view text)
{
    constexpr std::int64_t bound = std::int64_t{1} << 56;
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+'))
        text.remove_prefix(1);
    std::int64_t value = 0;
    for (const char digit : text)
        value = std::min(bound, value * 10 + (digit - '0'));
    return isNegative ? -value : value;
}

Decimal decimal(std::string_view raw)
{
    Decimal result;
    result.isNegative = raw.starts_with('-');
    if (result.isNegative)
        raw.remove_prefix(1);
    if (const std::size_t letter = raw.find_first_of("eE"); letter != raw.npos) {
        result.exponent = exponentValue(raw.substr(letter + 1));
        raw = raw.substr(0, letter);
    }
    const std::size_t first = raw.find_first_of("123456789");
    if (first == raw.npos) {
        result.exponent = 0;
        return result;
    }
    const std::size_t last = raw.find_last_of("123456789");
    const std::size_t point = std::min(raw.find('.'), raw.size());
    const auto signedSize = [](std::size_t size) { return static_cast<std::int64_t>(size); };
    result.exponent += last < point ? signedSize(point - last) - 1 : -signedSize(last - point);
    result.digits = raw.substr(first, last - first + 1);
    result.digitCount = signedSize(result.digits.size()) - (first < point && point < last ? 1 : 0);
    return result;
}

} // namespace

bool JsonString::unescapedEquals(std::string_view ascii) const
{
    CodeUnits units(raw);
    for (const char wanted : ascii) {
        if (units.atEnd())
            return false;
        const bool isEscape = units.atUnicodeEscape();
        const char32_t unit = isEscape ? nextEscapedCodePoint(units) : static_cast<unsigned char>(units.nextByte());
        if (unit != static_cast<unsigned char>(wanted))
            return false;
    }
    return units.atEnd();
}

std::string_view JsonString::decoded(std::string& storage) const
{
    if (!hasEscapes && findNonAscii(raw, 0) == raw.size())
        return raw;
    storage = decoded();
    return storage;
}

std::string JsonString::decoded() const
{
    if (!hasEscapes)
        return repairedUtf8(raw);
    std::string bytes;
    bytes.reserve(raw.size());
    CodeUnits units(raw);
    while (!units.atEnd()) {
        if (units.atUnicodeEscape())
            appendUtf8(bytes, nextEscapedCodePoint(units));
        else
            bytes.push_back(units.nextByte());
    }
    return repairedUtf8(bytes);
}

std::optional<std::int64_t> JsonNumber::toInteger() const
{
    constexpr std::int64_t mostDigits = 19;
    std::int64_t plain = 0;
    const char* const textEnd = raw.data() + raw.size();
    if (const auto [end, error] = std::from_chars(raw.data(), textEnd, plain); error == std::errc{} && end == textEnd)
        return plain;
    const Decimal number = decimal(raw);
    if (number.digitCount == 0)
        return 0;
    if (number.exponent < 0 || number.digitCount > mostDigits || number.digitCount + number.exponent > mostDigits)
        return std::nullopt;
    std::int64_t value = 0;
    bool overflows = false;
    const auto appendDigit = [&](int digit) {
        overflows |= __builtin_mul_overflow(value, 10, &value);
        overflows |= __builtin_add_overflow(value, number.isNegative ? -digit : digit, &value);
    };
    for (const char digit : number.digits) {
        if (digit != '.')
            appendDigit(digit - '0');
    }
    for (std::int64_t zeros = number.exponent; zeros > 0; --zeros)
        appendDigit(0);
    return overflows ? std::nullopt : std::optional(value);
}

std::optional<double> JsonNumber::toDouble() const
{
    double value = 0;
    const auto [end, error] = std::from_chars(raw.data(), raw.data() + raw.size(), value);
    if (error != std::errc::result_out_of_range)
        return value;
    const Decimal number = decimal(raw);
    if (number.digitCount + number.exponent > 0)
        return std::nullopt;
    return number.isNegative ? -0.0 : 0.0;
}

} // namespace tallyfox
