#pragma once

#include <string>
#include <string_view>

namespace tallyfox {

/// Whether `bytes` are UTF-8 as the Unicode Standard defines it (no surrogates, no overlong forms, at most U+10FFFF).
bool isValidUtf8(std::string_view bytes);

/// `bytes` as UTF-8: each maximal part of an ill-formed sequence becomes one U+FFFD, as the Unicode Standard
/// recommends (chapter 3, "Substitution of Maximal Subparts"). ASCII bytes always stay as they are.
std::string repairedUtf8(std::string_view bytes);

/// Appends the UTF-8 form of a code point that is no surrogate.
void appendUtf8(std::string& text, char32_t codePoint);

} // namespace tallyfox
