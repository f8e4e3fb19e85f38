#pragma once

#include "Tallyfox/Engine/CommandLine/TextStyle.h"
#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <string>

namespace tallyfox::SummaryTable {

/// The snapshot as a table for people, in UTF-8 with a line feed at the end of each line. It contains no other control
/// characters than, with colour, the terminal's colour codes.
std::string text(const UsageSnapshot& snapshot, const TextStyle& style);

} // namespace tallyfox::SummaryTable
