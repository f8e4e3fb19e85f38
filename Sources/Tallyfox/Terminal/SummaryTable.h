#pragma once

#include "Tallyfox/Engine/CommandLine/TextStyle.h"
#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <string>

namespace tallyfox::SummaryTable {

/// The figures as a table for people, in UTF-8 with a line feed at the end of each line. It holds no control
/// characters but line feeds and, with colour, the terminal's colour codes. `now` is what reset times are told from.
std::string text(const UsageSnapshot& snapshot, const TextStyle& style);

} // namespace tallyfox::SummaryTable
