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
    explicit HistoryLines(std::string_view text);

    [[nodiscard]] std::string_view text() const { return m_text; }

private:
    std::string_view m_text;
};

} // namespace tallyfox
