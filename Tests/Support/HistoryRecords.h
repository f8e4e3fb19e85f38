#pragma once

#include "TallyfoxCore/Usage/HistoryLines.h"
#include "TallyfoxCore/Usage/UsageSample.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tallyfox::test {

/// Members of a record by their path ("message.usage.input_tokens"), each with its value as JSON text; "" leaves the
/// member out.
using Members = std::map<std::string, std::string, std::less<>>;

/// An assistant record of a Claude Code history as one line: a complete one, with `changes`.
std::string claudeLine(const Members& changes = {});
/// The sample of the complete record.
UsageSample claudeSample();

/// A token-count event of a Codex CLI session as one line: a complete one, with `changes`.
std::string codexLine(const Members& changes = {});
/// The sample of the complete event.
UsageSample codexSample();

/// All lines of `lines`.
std::vector<std::string_view> linesOf(const HistoryLines& lines);

/// `lines`, each with a line feed after it.
std::string textOf(const std::vector<std::string>& lines);

/// Each sample's total, in order.
std::vector<std::int64_t> totalsOf(const std::vector<UsageSample>& samples);

} // namespace tallyfox::test
