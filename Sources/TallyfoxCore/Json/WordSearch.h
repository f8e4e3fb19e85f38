#pragma once

#include <cstddef>
#include <string_view>

namespace tallyfox {

/// Position at or after `from` of the first place that may write `word`, one to sixty-three lower-case letters and
/// underscores, as a JSON string: the quotation mark before the plain word, or an escape that stands for such a
/// character ("\u005f", "\u0061" and so on). `std::string_view::npos` if there is none: the word is then not in the
/// text, in whatever spelling.
std::size_t findJsonWord(std::string_view text, std::size_t from, std::string_view word);

} // namespace tallyfox
