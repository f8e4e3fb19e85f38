/// One or a few history lines, read by both parsers: skipping lines must never change the samples, and they must be
/// those that an oracle based on another JSON reader finds.

#include "FuzzSupport.h"
#include "PlainLines.h"
#include "TallyfoxCore/Usage/ClaudeUsageParser.h"
#include "TallyfoxCore/Usage/CodexUsageParser.h"
#include "UsageOracle.h"

#include <optional>
#include <string>

using namespace tallyfox;

void tallyfox::stopProgram(const char* /*why*/)
{
    throw TokenSumOverflow{};
}

namespace {

using Parse = std::vector<UsageSample> (*)(const HistoryLines&, LineSelection);
using Oracle = usageOracle::Verdict (*)(const std::vector<std::string>&);

std::optional<std::vector<UsageSample>> outcome(Parse parse, std::string_view text, LineSelection selection)
{
    try {
        return parse(HistoryLines(text), selection);
    } catch (const TokenSumOverflow&) {
        return std::nullopt;
    }
}

void check(Parse parse, Oracle oracle, std::string_view text)
{
    const auto samples = outcome(parse, text, LineSelection::mentioning);
    require(samples == outcome(parse, text, LineSelection::all), "both selections of lines give the same samples");
    const usageOracle::Verdict expected = oracle(plainLines(text));
    if (!expected.isKnown)
        return;
    require(expected.overflows == !samples.has_value(), "the program ends when the counts overflow, and only then");
    require(!samples || *samples == expected.samples, "the samples are those that RapidJSON's documents give");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = textOf(data, size);
    check(&ClaudeUsageParser::parse, &usageOracle::claude, text);
    check(&CodexUsageParser::parse, &usageOracle::codex, text);
    return 0;
}
