/// One or a few history lines, read by both parsers: passing over lines must never change what is found, and neither
/// must knowing the shape of a line.

#include "FuzzSupport.h"
#include "TallyfoxCore/ClaudeUsageParser.h"
#include "TallyfoxCore/CodexUsageParser.h"

#include <optional>
#include <string>

using namespace tallyfox;

void tallyfox::stopBecauseTokenSumOverflows()
{
    throw TokenSumOverflow{};
}

namespace {

using Parse = std::vector<UsageSample> (*)(const HistoryLines&, LineSelection);

std::optional<std::vector<UsageSample>> outcome(Parse parse, std::string_view text, LineSelection selection)
{
    try {
        return parse(HistoryLines(text), selection);
    } catch (const TokenSumOverflow&) {
        return std::nullopt;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // Twice, so that each line is read once more when its shape is known.
    const std::string once(textOf(data, size));
    const std::string text = once + '\n' + once;
    for (const Parse parse : {&ClaudeUsageParser::parse, &CodexUsageParser::parse}) {
        require(outcome(parse, text, LineSelection::mentioning) == outcome(parse, text, LineSelection::all),
                "both selections of lines give the same samples");
    }
    return 0;
}
