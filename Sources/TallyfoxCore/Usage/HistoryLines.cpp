#include "TallyfoxCore/Usage/HistoryLines.h"

#include "TallyfoxCore/Json/WordSearch.h"

#include <cstring>

namespace tallyfox {

bool HistoryLines::isLineFeed(std::size_t position) const
{
    return m_text[position] == '\n' && (position == 0 || m_text[position - 1] != '\r');
}

std::size_t HistoryLines::lineEnd(std::size_t from) const
{
    std::size_t end = m_text.find('\n', from);
    while (end != m_text.npos && !isLineFeed(end))
        end = m_text.find('\n', end + 1);
    return end == m_text.npos ? m_text.size() : end;
}

std::size_t HistoryLines::lineBegin(std::size_t position, std::size_t from) const
{
    const char* const begin = m_text.data() + from;
    std::size_t end = position;
    while (const void* const found = ::memrchr(begin, '\n', end - from)) {
        const auto lineFeed = static_cast<std::size_t>(static_cast<const char*>(found) - m_text.data());
        if (isLineFeed(lineFeed))
            return lineFeed + 1;
        end = lineFeed;
    }
    return from;
}

std::optional<std::string_view> HistoryLines::lineFrom(std::size_t from) const
{
    while (from < m_text.size() && isLineFeed(from))
        ++from;
    if (from == m_text.size())
        return std::nullopt;
    return m_text.substr(from, lineEnd(from) - from);
}

std::optional<std::string_view> HistoryLines::lineMentioning(std::string_view word, std::size_t from) const
{
    const std::size_t found = findJsonWord(m_text, from, word);
    if (found == m_text.npos)
        return std::nullopt;
    const std::size_t begin = lineBegin(found, from);
    return m_text.substr(begin, lineEnd(found) - begin);
}

HistoryLines HistoryLines::withoutFirst() const
{
    const auto first = lineFrom(0);
    return HistoryLines(first ? m_text.substr(endOf(*first)) : std::string_view{});
}

std::size_t LineCounter::indexOf(std::string_view line)
{
    for (auto other = m_lines.lineFrom(m_position); other && other->data() != line.data();
         other = m_lines.lineFrom(m_position))
    {
        m_position = m_lines.endOf(*other);
        ++m_index;
    }
    return m_index;
}

} // namespace tallyfox
