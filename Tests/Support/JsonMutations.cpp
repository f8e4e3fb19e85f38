#include "Support/JsonMutations.h"

#include <algorithm>
#include <cctype>

namespace tallyfox::test {

using namespace std::string_view_literals;

namespace {

const std::vector<std::string_view>& pieces()
{
    static const std::vector<std::string_view> texts{"{",
                                                     "}",
                                                     "[",
                                                     "]",
                                                     ",",
                                                     ":",
                                                     "\"",
                                                     "\\",
                                                     " ",
                                                     "\n",
                                                     "\r\n",
                                                     "\t",
                                                     "0",
                                                     "1",
                                                     "-",
                                                     "+",
                                                     ".",
                                                     "e",
                                                     "E",
                                                     "null",
                                                     "true",
                                                     "false",
                                                     "\"a\"",
                                                     "\"a\":1,",
                                                     "[]",
                                                     "{}",
                                                     "1e400",
                                                     "0.5",
                                                     "-0",
                                                     "1E-9",
                                                     "\0"sv,
                                                     "\x1F",
                                                     "\x7F",
                                                     "\x80",
                                                     "\xFF",
                                                     "\xC3",
                                                     "\xC3\xA9",
                                                     "\xE2\x82\xAC",
                                                     "\xF0\x9F\x98\x80",
                                                     "\xED\xA0\x80",
                                                     "\xEF\xBB\xBF",
                                                     "\\u0041",
                                                     "\\ud83d",
                                                     "\\ude00",
                                                     "\\ud83d\\ude00",
                                                     "\\u00",
                                                     "\\n",
                                                     "\\\"",
                                                     "\\\\",
                                                     "/",
                                                     "'",
                                                     "u",
                                                     "12345678901234567890",
                                                     "9223372036854775807",
                                                     "18446744073709551616",
                                                     "a"};
    return texts;
}

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool isUnicodeEscape(std::string_view text)
{
    return text.size() >= 6 && text.starts_with("\\u")
        && std::all_of(text.begin() + 2, text.begin() + 6,
                       [](char digit) { return std::isxdigit(static_cast<unsigned char>(digit)) != 0; });
}

/// What replaces the beginning of `text`, which lies inside of a string, and how many bytes that is.
std::pair<std::string_view, std::size_t> plainPartOfString(std::string_view text)
{
    if (isUnicodeEscape(text))
        return {"\\u0041", 6};
    if (text.front() == '\\')
        return {text.substr(0, 2), std::min<std::size_t>(2, text.size())};
    return {static_cast<unsigned char>(text.front()) > 0x7F ? "x" : text.substr(0, 1), 1};
}

} // namespace

std::string_view JsonMutations::pieceOf(std::string_view text)
{
    const std::size_t begin = below(text.size() + 1);
    return text.substr(begin, below(12) + 1);
}

void JsonMutations::mutate(std::string& text)
{
    const std::size_t position = below(text.size() + 1);
    const std::size_t length = below(4);
    switch (below(8)) {
    case 0:
        text.erase(position, length + 1);
        break;
    case 1:
    case 2:
    case 3:
        text.insert(position, pieces()[below(pieces().size())]);
        break;
    case 4:
        text.replace(position, length, pieces()[below(pieces().size())]);
        break;
    case 5:
        text.insert(position, std::string(pieceOf(text)));
        break;
    case 6:
        text.insert(position, pieceOf(m_seeds[below(m_seeds.size())]));
        break;
    default:
        if (position < text.size())
            text[position] = static_cast<char>(below(256));
    }
}

std::string JsonMutations::next()
{
    std::string text(m_seeds[below(m_seeds.size())]);
    for (std::size_t count = below(4); count > 0; --count)
        mutate(text);
    if (below(32) == 0)
        text.resize(below(text.size() + 1));
    return text;
}

std::string withoutReaderLimits(std::string_view text)
{
    std::string plain;
    bool isInString = false;
    std::size_t digits = 0;
    while (!text.empty()) {
        const bool isQuotationMark = text.front() == '"';
        std::pair<std::string_view, std::size_t> part{text.substr(0, 1), 1};
        if (isInString && !isQuotationMark)
            part = plainPartOfString(text);
        digits = !isInString && isDigit(text.front()) ? digits + 1 : 0;
        if (digits <= 2)
            plain += part.first;
        isInString ^= isQuotationMark;
        text.remove_prefix(part.second);
    }
    return plain;
}

} // namespace tallyfox::test
