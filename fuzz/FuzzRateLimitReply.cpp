/// One line of the Codex app server: decoding it gives what an oracle based on another JSON reader gives, within
/// bounds.

#include "FuzzSupport.h"
#include "TallyfoxCore/Json/Utf8.h"
#include "TallyfoxCore/Usage/CodexRateLimitParser.h"
#include "UsageOracle.h"

#include <cmath>
#include <string>

using namespace tallyfox;

namespace {

void requireBounds(const QuotaWindow& window)
{
    require(std::isfinite(window.usedPercent), "a percentage is finite");
    require(!window.resetsAt || (*window.resetsAt >= distantPast && *window.resetsAt <= distantFuture),
            "a reset time lies within the years 1 to 9999");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = textOf(data, size);
    const auto decoded = CodexRateLimitParser::decode(text);
    const auto expected = usageOracle::reply(std::string{text});
    require(!expected || decoded == *expected, "a reply says what RapidJSON's document says");
    if (const auto* const snapshot = std::get_if<QuotaSnapshot>(&decoded)) {
        require(isValidUtf8(text), "a decoded reply is UTF-8");
        requireBounds(snapshot->primary);
        if (snapshot->secondary)
            requireBounds(*snapshot->secondary);
    }
    const std::string repaired = repairedUtf8(text);
    require(isValidUtf8(repaired), "repaired text is UTF-8");
    require(CodexRateLimitParser::isReply(text, 2) == CodexRateLimitParser::isReply(repaired, 2),
            "repairing a line does not change whether it is the reply");
    return 0;
}
