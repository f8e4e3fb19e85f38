#include "Tallyfox/Terminal/JsonWriter.h"

#include "TallyfoxCore/Json/Utf8.h"

#include <array>
#include <charconv>
#include <cmath>

namespace tallyfox {

namespace {

constexpr unsigned char firstPrintable = 0x20;

std::string escaped(unsigned char control)
{
    constexpr std::string_view digits = "0123456789abcdef";
    return {'\\', 'u', '0', '0', digits[control >> 4U], digits[control & 0xFU]};
}

} // namespace

void JsonWriter::separate()
{
    if (m_needsComma)
        m_text += ',';
    m_needsComma = true;
}

void JsonWriter::beginObject()
{
    separate();
    m_text += '{';
    m_needsComma = false;
}

void JsonWriter::endObject()
{
    m_text += '}';
    m_needsComma = true;
}

void JsonWriter::beginArray()
{
    separate();
    m_text += '[';
    m_needsComma = false;
}

void JsonWriter::endArray()
{
    m_text += ']';
    m_needsComma = true;
}

void JsonWriter::name(std::string_view name)
{
    string(name);
    m_text += ':';
    m_needsComma = false;
}

void JsonWriter::null()
{
    separate();
    m_text += "null";
}

void JsonWriter::boolean(bool value)
{
    separate();
    m_text += value ? "true" : "false";
}

void JsonWriter::integer(std::int64_t value)
{
    separate();
    m_text += std::to_string(value);
}

void JsonWriter::number(double value)
{
    if (!std::isfinite(value)) {
        null();
        return;
    }
    separate();
    std::array<char, 32> digits{};
    m_text.append(digits.begin(), std::to_chars(digits.begin(), digits.end(), value).ptr);
}

void JsonWriter::string(std::string_view value)
{
    separate();
    m_text += '"';
    for (const char character : repairedUtf8(value)) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < firstPrintable) {
            m_text += escaped(byte);
            continue;
        }
        if (character == '"' || character == '\\')
            m_text += '\\';
        m_text += character;
    }
    m_text += '"';
}

} // namespace tallyfox
