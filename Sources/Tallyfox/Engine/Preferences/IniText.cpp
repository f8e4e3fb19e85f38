#include "Tallyfox/Engine/Preferences/IniText.h"

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>
#include <QStringView>

#include <algorithm>
#include <array>

namespace tallyfox {

namespace {

using namespace Qt::StringLiterals;

constexpr auto bytesBegin = "@ByteArray("_L1;
constexpr auto bytesEnd = ")"_L1;

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r";
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

bool isHexDigit(char16_t character)
{
    return (character >= u'0' && character <= u'9') || (character >= u'a' && character <= u'f')
        || (character >= u'A' && character <= u'F');
}

/// Reads what follows a backslash from the front of `rest`, which is not empty.
QChar takeEscaped(QStringView& rest)
{
    constexpr std::string_view names = "abfnrtv";
    constexpr std::string_view meanings = "\a\b\f\n\r\t\v";
    const char16_t name = rest.front().unicode();
    rest = rest.sliced(1);
    if (name == u'x') {
        qsizetype digits = 0;
        while (digits < rest.size() && isHexDigit(rest[digits].unicode()))
            ++digits;
        const QChar character{rest.first(digits).toString().toUShort(nullptr, 16)};
        rest = rest.sliced(digits);
        return character;
    }
    if (name == u'0')
        return QChar{u'\0'};
    const std::size_t known = name < 128 ? names.find(static_cast<char>(name)) : std::string_view::npos;
    return known == std::string_view::npos ? QChar{name} : QChar{QLatin1Char{meanings[known]}};
}

/// The value without quotes and escapes.
QString unescaped(std::string_view raw)
{
    const QString text = QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size()));
    QString result;
    QStringView rest{text};
    while (!rest.empty()) {
        const QChar character = rest.front();
        rest = rest.sliced(1);
        if (character == u'\\' && !rest.empty())
            result += takeEscaped(rest);
        else if (character != u'"')
            result += character;
    }
    return result;
}

/// Bytes as QSettings writes them between quotes: printable ASCII unchanged, other bytes as hexadecimal escapes. A
/// hexadecimal digit after an escape is escaped too, since it would be read as part of it.
std::string escaped(std::string_view bytes)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string result;
    bool isAfterEscape = false;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        const bool isPlain = code >= 0x20 && code < 0x7F && byte != '"' && byte != '\\';
        if (isPlain && !(isAfterEscape && isHexDigit(code))) {
            result += byte;
            isAfterEscape = false;
            continue;
        }
        result.append("\\x").append({digits[code >> 4U], digits[code & 15U]});
        isAfterEscape = true;
    }
    return result;
}

} // namespace

IniText::Line IniText::readLine(std::string_view text, bool& isInGeneral)
{
    Line line{.text = std::string{text}};
    const std::string_view content = trimmed(text);
    if (content.empty() || content.front() == ';' || content.front() == '#')
        return line;
    if (content.front() == '[') {
        line.isDamaged = content.back() != ']';
        if (line.isDamaged) // the current section continues, whether or not this line is removed
            return line;
        const QString title = QString::fromUtf8(content.data(), static_cast<qsizetype>(content.size()));
        isInGeneral = title.compare("[General]"_L1, Qt::CaseInsensitive) == 0;
        line.opensGeneral = isInGeneral;
        return line;
    }
    const std::size_t equals = content.find('=');
    line.isDamaged = equals == 0 || equals == std::string_view::npos;
    if (!line.isDamaged && isInGeneral)
        line.key = std::string{trimmed(content.substr(0, equals))};
    return line;
}

IniText::IniText(std::string_view text)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    bool isInGeneral = true; // keys before the first section belong to it
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        m_lines.push_back(readLine(text.substr(0, end), isInGeneral));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::optional<std::string> IniText::value(std::string_view key) const
{
    const auto line =
        std::find_if(m_lines.rbegin(), m_lines.rend(), [key](const Line& each) { return each.key == key; });
    if (line == m_lines.rend())
        return std::nullopt;
    const QString text = unescaped(trimmed(std::string_view{line->text}.substr(line->text.find('=') + 1)));
    if (!text.startsWith(bytesBegin) || !text.endsWith(bytesEnd))
        return text.toStdString();
    const auto length = text.size() - bytesBegin.size() - bytesEnd.size();
    return QStringView{text}.sliced(bytesBegin.size(), length).toLatin1().toStdString();
}

void IniText::setLine(std::string_view key, std::string line)
{
    remove(key);
    const auto isOfGeneral = [](const Line& each) { return each.key || each.opensGeneral; };
    auto place = std::find_if(m_lines.rbegin(), m_lines.rend(), isOfGeneral).base();
    // Without any line of the section, the section is added at the end.
    if (place == m_lines.begin())
        place = m_lines.insert(m_lines.end(), {.text = "[General]", .opensGeneral = true}) + 1;
    m_lines.insert(place, {.text = std::move(line), .key = std::string{key}});
}

void IniText::setPlain(std::string_view key, std::string_view value)
{
    setLine(key, std::string{key} + '=' + std::string{value});
}

void IniText::setBytes(std::string_view key, std::string_view bytes)
{
    setLine(key, std::string{key} + "=\"@ByteArray(" + escaped(bytes) + ")\"");
}

void IniText::remove(std::string_view key)
{
    std::erase_if(m_lines, [key](const Line& line) { return line.key == key; });
}

bool IniText::removeDamage()
{
    return std::erase_if(m_lines, [](const Line& line) { return line.isDamaged; }) > 0;
}

std::string IniText::text() const
{
    std::string text;
    for (const Line& line : m_lines)
        text.append(line.text).append("\n");
    return text;
}

} // namespace tallyfox
