#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallyfox {

/// What a piece of text means; a colour at most.
enum class Tone { plain, strong, quiet, good, notice, bad };

/// How a table may be drawn.
struct TextStyle {
    bool hasColour = false;
    std::size_t columns = 80; ///< of the terminal

    /// The text, between the terminal's codes for its tone where there is colour.
    [[nodiscard]] std::string paint(Tone tone, std::string_view text) const;
};

/// The number of characters in UTF-8 text, none of which is wider than a column.
std::size_t countColumns(std::string_view text);

/// The text with blanks behind it, or before it, up to a number of columns.
std::string padRight(std::string_view text, std::size_t columns);
std::string padLeft(std::string_view text, std::size_t columns);

/// The text as a terminal may see it: valid UTF-8, and U+FFFD for every control character, line feeds included.
std::string replaceControls(std::string_view text);

} // namespace tallyfox
