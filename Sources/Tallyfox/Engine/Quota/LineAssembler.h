#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tallyfox {

/// Puts lines together from pieces of a stream, in bounded memory: a line longer than the maximum is dropped while it
/// comes in. Only a line feed ends a line; empty lines count.
class LineAssembler {
public:
    explicit LineAssembler(std::size_t maximumLength);

    /// The next complete line of what came so far and `input`, without its line feed; `input` is shortened by what
    /// was used. Nothing once `input` is used up. The line lasts until the next call.
    std::optional<std::string_view> next(std::string_view& input);

    /// At the end of the stream: the line that no line feed ended, if there is one.
    std::optional<std::string_view> last();

private:
    void keep(std::string_view piece);

    std::size_t m_maximumLength;
    std::string m_line;
    bool m_isComplete = false; ///< `m_line` has been handed out
    bool m_isDropped = false; ///< the present line is too long
};

} // namespace tallyfox
