#pragma once

#include "TallyfoxCore/Usage/HistoryLines.h"
#include "TallyfoxCore/Usage/UsageSample.h"

#include <vector>

namespace tallyfox {

/// Reads the token-count events of one Codex CLI session file.
namespace CodexUsageParser {

/// The samples of `lines`, one for each token-count event with a last usage and a timestamp, in the order of the
/// lines. All other lines are skipped. A token sum beyond 64 bits ends the program (TokenSum.h).
std::vector<UsageSample> parse(const HistoryLines& lines, LineSelection selection = LineSelection::mentioning);

} // namespace CodexUsageParser

} // namespace tallyfox
