#pragma once

#include <string_view>

/// What RapidJSON thinks of a text. `undecided` is what it refuses although the grammar allows it (numbers beyond a
/// double, escapes of lone surrogates), and what it would misread (a NUL byte is an end to it).
enum class RapidjsonVerdict { accepted, refused, undecided };

RapidjsonVerdict rapidjsonVerdict(std::string_view text);
