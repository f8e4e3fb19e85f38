#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace tallyfox {

/// The lines of a history text, found on demand: a line feed ends a line, unless a carriage return stands before it
/// (CR LF is one character, and not a line feed); empty lines do not count. A view: the text must outlive it. The text
/// may hold any bytes; a byte sequence that is no UTF-8 belongs to its line alone.
class HistoryLines {
public:
    explicit HistoryLines(std::string_view text)
        : m_text(text)
    { }

    [[nodiscard]] std::string_view text() const
    {
        return m_text;
    }

    /// The first line that begins at or after `from`, which must be the text's begin or the end of a line.
    [[nodiscard]] std::optional<std::string_view> lineFrom(std::size_t from) const;

    /// The first line, looked for like `lineFrom`, that holds `word` as a JSON string: in quotation marks, or written
    /// with an escape that can stand for a lower-case letter or an underscore. Every line that has `word`, made of such
    /// characters, as a key or a string is found; others may be.
    [[nodiscard]] std::optional<std::string_view> lineMentioning(std::string_view word, std::size_t from) const;

    /// Where a line of this text ends, as an offset into the text.
    [[nodiscard]] std::size_t endOf(std::string_view line) const
    {
        return beginOf(line) + line.size();
    }

    /// The lines behind the first one.
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

/// Tells the place of lines in their text, counting from 0. Counts on from the line asked for last, so that asking for
/// all lines in order takes linear time.
class LineCounter {
public:
    explicit LineCounter(const HistoryLines& lines)
        : m_lines(lines)
    { }

    /// `line` must be a line of the text, and not stand before the one asked for last.
    std::size_t indexOf(std::string_view line);

private:
    HistoryLines m_lines;
    std::size_t m_position = 0;
    std::size_t m_index = 0;
};

/// Which lines a history parser reads.
enum class LineSelection {
    mentioning, ///< those that mention the member without which a line has no usage: all that can matter
    all, ///< every line; the same samples, slower: the reference for the other one
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
