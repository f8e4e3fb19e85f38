#pragma once

#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <string>

namespace tallyfox::SummaryJson {

/// The version of the document. It only grows by new members; a change of meaning raises it.
inline constexpr int schemaVersion = 1;

/// The figures as one JSON object in UTF-8 with a line feed at the end. A missing value is null, and so is the
/// `updatedAt` of a state whose data were never obtained.
std::string document(const UsageSnapshot& snapshot);

} // namespace tallyfox::SummaryJson
