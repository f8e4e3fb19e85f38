#pragma once

#include "TallyfoxCore/Usage/CodexRateLimitParser.h"
#include "TallyfoxCore/Usage/UsageSample.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

/// The samples of a history and the quota of a reply, computed from RapidJSON's documents of their lines.
namespace usageOracle {

/// The samples of the lines; unknown where the oracle cannot judge: RapidJSON refuses escapes of lone surrogates and
/// numbers beyond its types, does not bound the depth, and reads 100.0000000000000000001 as 1e2.
struct Verdict {
    bool isKnown = true;
    bool overflows = false; ///< the token counts add up to more than 64 bits hold
    std::vector<tallyfox::UsageSample> samples;
};

Verdict claude(const std::vector<std::string>& lines);
Verdict codex(const std::vector<std::string>& lines);

/// The quota in a rate-limit reply; nothing where the oracle cannot judge.
std::optional<std::variant<tallyfox::QuotaSnapshot, tallyfox::DecodingError>> reply(const std::string& line);

} // namespace usageOracle
