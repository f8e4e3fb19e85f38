#pragma once

#include <QString>

#include <string_view>

namespace tallyfox {

/// A text of the store (a label of a health, a state's detail) in the user's language; as it is where there is no
/// translation.
QString translatedText(std::string_view text);

} // namespace tallyfox
