#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallyfox {

/// The meaning of a piece of text, shown as a colour or a weight.
enum class Tone { plain, strong, quiet, good, notice, bad };

/// What the output can show.
struct TextStyle {
    bool hasColour = false;
    std::size_t columns = 80; ///< of the terminal

    /// The text; with colour, between the terminal's escape sequences for its tone.
    [[nodiscard]] std::string paint(Tone tone, std::string_view text) const;
};

/// The number of characters in UTF-8 text; assumes that each is one column wide.
std::size_t countColumns(std::string_view text);

/// The text with spaces after it, or before it, up to a number of columns.
std::string padRight(std::string_view text, std::size_t columns);
std::string padLeft(std::string_view text, std::size_t columns);

/// The text in a form that is safe for a terminal: invalid UTF-8 and control characters, including line feeds, become
/// U+FFFD.
std::string replaceControls(std::string_view text);

} // namespace tallyfox
