#pragma once

#include <string_view>

/// RapidJSON's verdict on a text. `undecided`: it refuses the text although the grammar allows it (numbers beyond a
/// double, escapes of lone surrogates), or would misread it (it stops at a NUL byte).
enum class RapidjsonVerdict { accepted, refused, undecided };

RapidjsonVerdict rapidjsonVerdict(std::string_view text);
