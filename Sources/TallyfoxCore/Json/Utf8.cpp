#include "TallyfoxCore/Json/Utf8.h"

#include "TallyfoxCore/Json/ByteScan.h"

#include <cstddef>

namespace tallyfox {

namespace {

/// The sequence at one position: `length` bytes that form a code point or one ill-formed part.
struct Utf8Part {
    std::size_t length = 1;
    bool isWellFormed = false;
};

/// How many bytes follow a lead byte, and the range of the first of them (Unicode Standard, table 3-7).
struct LeadByte {
    std::size_t following = 0;
    unsigned char lowest = 0x80;
    unsigned char highest = 0xBF;
};

LeadByte leadByte(unsigned char byte)
{
    if (byte >= 0xC2 && byte <= 0xDF)
        return {.following = 1};
    if (byte == 0xE0)
        return {.following = 2, .lowest = 0xA0};
    if (byte == 0xED)
        return {.following = 2, .highest = 0x9F};
    if (byte >= 0xE1 && byte <= 0xEF)
        return {.following = 2};
    if (byte == 0xF0)
        return {.following = 3, .lowest = 0x90};
    if (byte >= 0xF1 && byte <= 0xF3)
        return {.following = 3};
    if (byte == 0xF4)
        return {.following = 3, .highest = 0x8F};
    return {};
}

Utf8Part partAt(std::string_view bytes, std::size_t position)
{
    const auto byteAt = [bytes](std::size_t index) { return static_cast<unsigned char>(bytes[index]); };
    if (byteAt(position) < 0x80)
        return {.length = 1, .isWellFormed = true};
    LeadByte lead = leadByte(byteAt(position));
    const std::size_t needed = lead.following + 1;
    std::size_t length = 1;
    while (length < needed && position + length < bytes.size()) {
        const unsigned char byte = byteAt(position + length);
        if (byte < lead.lowest || byte > lead.highest)
            break;
        lead.lowest = 0x80;
        lead.highest = 0xBF;
        ++length;
    }
    return {.length = length, .isWellFormed = needed > 1 && length == needed};
}

} // namespace

bool isValidUtf8(std::string_view bytes)
{
    std::size_t position = 0;
    while ((position = findNonAscii(bytes, position)) < bytes.size()) {
        const Utf8Part part = partAt(bytes, position);
        if (!part.isWellFormed)
            return false;
        position += part.length;
    }
    return true;
}

std::string repairedUtf8(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    std::size_t position = 0;
    while (position < bytes.size()) {
        const std::size_t asciiEnd = findNonAscii(bytes, position);
        text.append(bytes.substr(position, asciiEnd - position));
        if (asciiEnd == bytes.size())
            break;
        const Utf8Part part = partAt(bytes, asciiEnd);
        if (part.isWellFormed)
            text.append(bytes.substr(asciiEnd, part.length));
        else
            appendUtf8(text, U'\uFFFD');
        position = asciiEnd + part.length;
    }
    return text;
}

void appendUtf8(std::string& text, char32_t codePoint)
{
    const auto append = [&text](char32_t value) { text.push_back(static_cast<char>(value)); };
    if (codePoint < 0x80) {
        append(codePoint);
    } else if (codePoint < 0x800) {
        append(0xC0 | (codePoint >> 6));
        append(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        append(0xE0 | (codePoint >> 12));
        append(0x80 | ((codePoint >> 6) & 0x3F));
        append(0x80 | (codePoint & 0x3F));
    } else {
        append(0xF0 | (codePoint >> 18));
        append(0x80 | ((codePoint >> 12) & 0x3F));
        append(0x80 | ((codePoint >> 6) & 0x3F));
        append(0x80 | (codePoint & 0x3F));
    }
}

} // namespace tallyfox
