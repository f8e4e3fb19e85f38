#include "Tallyfox/Engine/CommandLine/TextStyle.h"

#include "TallyfoxCore/Json/Utf8.h"

#include <algorithm>

namespace tallyfox {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

std::string_view colourCode(Tone tone)
{
    switch (tone) {
    case Tone::strong:
        return "1";
    case Tone::quiet:
        return "2";
    case Tone::good:
        return "32";
    case Tone::notice:
        return "33";
    case Tone::bad:
        return "31";
    case Tone::plain:
        break;
    }
    return {};
}

bool continuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The length in bytes of the control character that `text` begins with: 1 for C0 and DEL, 2 for C1, else 0.
std::size_t controlAt(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x20 || first == 0x7F)
        return 1;
    const bool isC1 = first == 0xC2 && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xA0;
    return isC1 ? 2 : 0;
}

} // namespace

std::string TextStyle::paint(Tone tone, std::string_view text) const
{
    if (!hasColour || tone == Tone::plain || text.empty())
        return std::string{text};
    return std::string{"\x1b["}.append(colourCode(tone)).append("m").append(text).append("\x1b[0m");
}

std::size_t countColumns(std::string_view text)
{
    return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continuesCharacter));
}

std::string padRight(std::string_view text, std::size_t columns)
{
    const std::size_t used = countColumns(text);
    return std::string{text}.append(used < columns ? columns - used : 0, ' ');
}

std::string padLeft(std::string_view text, std::size_t columns)
{
    const std::size_t used = countColumns(text);
    return std::string(used < columns ? columns - used : 0, ' ').append(text);
}

std::string replaceControls(std::string_view text)
{
    const std::string valid = repairedUtf8(text);
    std::string clean;
    for (std::string_view rest = valid; !rest.empty();) {
        const std::size_t control = controlAt(rest);
        clean += control > 0 ? replacement : rest.substr(0, 1);
        rest.remove_prefix(std::max<std::size_t>(control, 1));
    }
    return clean;
}

} // namespace tallyfox
