#pragma once

#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <string>

namespace tallyfox::SummaryJson {

/// The version of the format. New members do not change it; a changed meaning of a member does.
inline constexpr int schemaVersion = 1;

/// The snapshot as one JSON object in UTF-8 with a line feed at the end. A missing value is null, and so is `updatedAt`
/// before data were first obtained.
std::string document(const UsageSnapshot& snapshot);

} // namespace tallyfox::SummaryJson
