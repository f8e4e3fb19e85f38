#include "Tallyfox/Agent/Desktop/DesktopEntry.h"

#include <algorithm>

namespace tallyfox {

namespace {

constexpr std::string_view mainGroup = "[Desktop Entry]";
constexpr std::string_view escapeNames = "sntr\\";
constexpr std::string_view escapeMeanings = " \n\t\r\\";
constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(blanks);
    return begin == std::string_view::npos ? std::string_view{}
                                           : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::string unescaped(std::string_view raw)
{
    std::string result;
    for (std::size_t index = 0; index < raw.size(); ++index) {
        const std::size_t escape =
            raw[index] == '\\' && index + 1 < raw.size() ? escapeNames.find(raw[index + 1]) : std::string_view::npos;
        const bool isEscape = escape != std::string_view::npos;
        result += isEscape ? escapeMeanings[escape] : raw[index];
        index += isEscape ? 1 : 0;
    }
    return result;
}

/// A space needs to be escaped only where it would be trimmed.
std::string escaped(std::string_view value)
{
    std::string result;
    for (const char character : value) {
        const std::size_t escape = character == ' ' ? std::string_view::npos : escapeMeanings.find(character);
        if (escape == std::string_view::npos)
            result += character;
        else
            result.append("\\").append(1, escapeNames[escape]);
    }
    if (result.starts_with(' '))
        result.replace(0, 1, "\\s");
    return result;
}

/// The quoted argument at the start of a command line, whose opening quote has been removed; nothing without a closing
/// quote.
std::optional<std::string> quotedArgument(std::string_view rest)
{
    std::string argument;
    for (std::size_t index = 0; index < rest.size(); ++index) {
        if (rest[index] == '"')
            return argument;
        if (rest[index] == '\\' && index + 1 < rest.size())
            ++index;
        argument += rest[index];
    }
    return std::nullopt;
}

std::string withoutFieldCodes(std::string_view argument)
{
    std::string result;
    for (std::size_t index = 0; index < argument.size(); ++index) {
        result += argument[index];
        if (argument.substr(index).starts_with("%%"))
            ++index;
    }
    return result;
}

} // namespace

DesktopEntry::DesktopEntry(std::string_view text)
{
    bool isInMainGroup = false;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        Line line{.text = std::string{text.substr(0, end)}};
        const std::string_view content = trimmed(line.text);
        const std::size_t equals = content.find('=');
        if (content.starts_with('['))
            line.opensMainGroup = isInMainGroup = content == mainGroup;
        else if (isInMainGroup && !content.starts_with('#') && equals != std::string_view::npos)
            line.key = trimmed(content.substr(0, equals));
        m_lines.push_back(std::move(line));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::optional<std::string> DesktopEntry::value(std::string_view key) const
{
    const auto line =
        std::find_if(m_lines.rbegin(), m_lines.rend(), [key](const Line& each) { return each.key == key; });
    if (line == m_lines.rend())
        return std::nullopt;
    return unescaped(trimmed(std::string_view{line->text}.substr(line->text.find('=') + 1)));
}

bool DesktopEntry::isTrue(std::string_view key) const
{
    return value(key) == "true";
}

void DesktopEntry::set(std::string_view key, std::string_view value)
{
    Line changed{.text = std::string{key} + '=' + escaped(value), .key = std::string{key}};
    const auto old =
        std::find_if(m_lines.rbegin(), m_lines.rend(), [key](const Line& each) { return each.key == key; });
    if (old != m_lines.rend()) {
        *old = std::move(changed);
        return;
    }
    const auto isOfGroup = [](const Line& each) { return each.opensMainGroup || !each.key.empty(); };
    auto place = std::find_if(m_lines.rbegin(), m_lines.rend(), isOfGroup).base();
    if (place == m_lines.begin())
        place = m_lines.insert(m_lines.end(), {.text = std::string{mainGroup}, .opensMainGroup = true}) + 1;
    m_lines.insert(place, std::move(changed));
}

void DesktopEntry::remove(std::string_view key)
{
    std::erase_if(m_lines, [key](const Line& line) { return line.key == key; });
}

std::string DesktopEntry::text() const
{
    std::string text;
    for (const Line& line : m_lines)
        text.append(line.text).append("\n");
    return text;
}

std::string execValue(const std::filesystem::path& program)
{
    constexpr std::string_view reserved = " \t\n\"'\\><~|&;$*?#()`";
    constexpr std::string_view escapedInQuotes = "\"`$\\";
    const std::string& path = program.native();
    const bool needsQuotes = path.find_first_of(reserved) != std::string::npos;
    std::string value = needsQuotes ? "\"" : "";
    for (const char character : path) {
        if (escapedInQuotes.find(character) != std::string_view::npos)
            value += '\\';
        else if (character == '%')
            value += '%';
        value += character;
    }
    return value + (needsQuotes ? "\"" : "");
}

std::optional<std::string> execProgram(std::string_view exec)
{
    const std::string_view command = trimmed(exec);
    const auto argument = command.starts_with('"') ? quotedArgument(command.substr(1))
                                                   : std::string{command.substr(0, command.find_first_of(" \t\n"))};
    return argument && !argument->empty() ? std::optional{withoutFieldCodes(*argument)} : std::nullopt;
}

} // namespace tallyfox
