#pragma once

#include <cstddef>
#include <string_view>

namespace tallyfox {

/// The first position at or after `from` where `word` may be written as a JSON string: the quotation mark before the
/// plain word, or an escape for one of its characters ("\u005f", "\u0061" and so on). `std::string_view::npos` if there
/// is none: then the text does not contain the word in any spelling. `word` has one to sixty-three characters,
/// lower-case letters and underscores.
std::size_t findJsonWord(std::string_view text, std::size_t from, std::string_view word);

} // namespace tallyfox
