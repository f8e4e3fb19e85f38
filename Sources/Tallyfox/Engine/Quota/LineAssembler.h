#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tallyfox {

/// Assembles lines from pieces of a stream in bounded memory: drops a line that exceeds the maximum while reading it.
/// Only a line feed ends a line; empty lines are returned too.
class LineAssembler {
public:
    explicit LineAssembler(std::size_t maximumLength);

    /// The next complete line, without its line feed; removes what it used from the front of `input`. Nothing once
    /// `input` is used up. The line is valid until the next call.
    std::optional<std::string_view> next(std::string_view& input);

    /// At the end of the stream: the last line if it has no line feed.
    std::optional<std::string_view> last();

private:
    void keep(std::string_view piece);

    std::size_t m_maximumLength;
    std::string m_line;
    bool m_isComplete = false; ///< `m_line` has been returned
    bool m_isDropped = false; ///< the current line is too long
};

} // namespace tallyfox
