#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace tallyfox {

/// The lines of a history text, found on demand: a line feed ends a line unless it follows a carriage return (CR LF
/// counts as one character, not as a line feed); empty lines do not count. A view: the text must outlive it. The text
/// may hold any bytes; invalid UTF-8 affects only its line.
class HistoryLines {
public:
    explicit HistoryLines(std::string_view text)
        : m_text(text)
    { }

    [[nodiscard]] std::string_view text() const
    {
        return m_text;
    }

    /// The first line that begins at or after `from`, which must be the beginning of the text or the end of a line.
    [[nodiscard]] std::optional<std::string_view> lineFrom(std::size_t from) const;

    /// The first line from `from` on, as in `lineFrom`, that may hold `word` as a JSON string: in quotation marks, or
    /// with an escape for a lower-case letter or an underscore. It finds every line that has `word`, made of such
    /// characters, as a key or a string, and may find others.
    [[nodiscard]] std::optional<std::string_view> lineMentioning(std::string_view word, std::size_t from) const;

    /// Where a line of this text ends, as an offset into the text.
    [[nodiscard]] std::size_t endOf(std::string_view line) const
    {
        return beginOf(line) + line.size();
    }

    /// The lines after the first one.
    [[nodiscard]] HistoryLines withoutFirst() const;

private:
    [[nodiscard]] std::size_t beginOf(std::string_view line) const
    {
        return static_cast<std::size_t>(line.data() - m_text.data());
    }
    [[nodiscard]] bool isLineFeed(std::size_t position) const;
    [[nodiscard]] std::size_t lineEnd(std::size_t from) const;
    [[nodiscard]] std::size_t lineBegin(std::size_t position, std::size_t from) const;

    std::string_view m_text;
};

/// The numbers of lines in their text, from 0. Counts on from the previous call, so that asking for all lines in order
/// takes linear time.
class LineCounter {
public:
    explicit LineCounter(const HistoryLines& lines)
        : m_lines(lines)
    { }

    /// `line` must be a line of the text, and not before that of the previous call.
    std::size_t indexOf(std::string_view line);

private:
    HistoryLines m_lines;
    std::size_t m_position = 0;
    std::size_t m_index = 0;
};

/// Which lines a history parser reads.
enum class LineSelection {
    mentioning, ///< those that mention the member that holds the usage
    all, ///< every line; slower, with the same samples: the reference for tests
};

/// Calls `visit` with each selected line of `lines`, in order.
template <typename Visit>
void forEachLine(const HistoryLines& lines, LineSelection selection, std::string_view word, Visit visit)
{
    const auto lineFrom = [&](std::size_t from) {
        return selection == LineSelection::all ? lines.lineFrom(from) : lines.lineMentioning(word, from);
    };
    for (auto line = lineFrom(0); line; line = lineFrom(lines.endOf(*line)))
        visit(*line);
}

} // namespace tallyfox
