#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tallyfox::test {

/// JSON texts that the grammar allows, at least one for each of its productions.
const std::vector<std::string_view>& legalJsonTexts();

/// Near misses: texts that the grammar refuses, and that stay refused as the value of an object's last member.
const std::vector<std::string_view>& refusedJsonTexts();

/// One legal text with every kind of value, escape and white space, for tests that cut or change it.
std::string_view richJsonText();

/// `depth` arrays, or objects, around the number 1.
std::string nestedArrays(std::size_t depth);
std::string nestedObjects(std::size_t depth);

} // namespace tallyfox::test
