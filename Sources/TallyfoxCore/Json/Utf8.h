#pragma once

#include <string>
#include <string_view>

namespace tallyfox {

/// Whether `bytes` are valid UTF-8 (no surrogates, no overlong forms, at most U+10FFFF).
bool isValidUtf8(std::string_view bytes);

/// `bytes` as UTF-8: each maximal part of an ill-formed sequence becomes one U+FFFD, as the Unicode Standard
/// recommends (chapter 3, "Substitution of Maximal Subparts"). ASCII bytes are never changed.
std::string repairedUtf8(std::string_view bytes);

/// Appends a code point, which must not be a surrogate, as UTF-8.
void appendUtf8(std::string& text, char32_t codePoint);

} // namespace tallyfox
