#include "Tallyfox/Engine/Quota/LineAssembler.h"

#include <utility>

namespace tallyfox {

LineAssembler::LineAssembler(std::size_t maximumLength)
    : m_maximumLength(maximumLength)
{ }

std::optional<std::string_view> LineAssembler::next(std::string_view& input)
{
    if (std::exchange(m_isComplete, false))
        m_line.clear();
    while (!input.empty()) {
        const std::size_t end = input.find('\n');
        keep(input.substr(0, end));
        if (end == std::string_view::npos) {
            input = {};
            break;
        }
        input.remove_prefix(end + 1);
        if (std::exchange(m_isDropped, false))
            continue;
        m_isComplete = true;
        return m_line;
    }
    return std::nullopt;
}

std::optional<std::string_view> LineAssembler::last()
{
    if (m_isComplete || m_isDropped || m_line.empty())
        return std::nullopt;
    return m_line;
}

void LineAssembler::keep(std::string_view piece)
{
    if (m_isDropped)
        return;
    if (piece.size() > m_maximumLength - m_line.size()) {
        m_isDropped = true;
        m_line.clear();
        return;
    }
    m_line.append(piece);
}

} // namespace tallyfox
