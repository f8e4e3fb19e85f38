#pragma once

#include "TallyfoxCore/Usage/HistoryLines.h"
#include "TallyfoxCore/Usage/UsageSample.h"

#include <vector>

namespace tallyfox {

/// Reads the usage records of one Claude Code history file.
namespace ClaudeUsageParser {

/// The samples of `lines`, ascending by timestamp. Each message id gives one sample, the reading with the largest
/// total (of equals the earlier one); each record without an id gives its own. Lines other than assistant records
/// with usage and a timestamp are skipped. Message content is skipped, never decoded. A token sum beyond 64 bits
/// ends the program (TokenSum.h).
std::vector<UsageSample> parse(const HistoryLines& lines, LineSelection selection = LineSelection::mentioning);

} // namespace ClaudeUsageParser

} // namespace tallyfox
