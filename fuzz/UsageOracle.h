#pragma once

#include "TallyfoxCore/Usage/CodexRateLimitParser.h"
#include "TallyfoxCore/Usage/UsageSample.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

/// The samples of a history and the quota of a reply once more, from RapidJSON's documents of their lines.
namespace usageOracle {

/// What the lines say; nothing where the oracle cannot tell: RapidJSON has no opinion on the escapes of lone surrogates
/// and on numbers beyond its types, does not bound the depth, and does not tell 1e2 from 100.0000000000000000001.
struct Verdict {
    bool isKnown = true;
    bool overflows = false; ///< the token counts add up to more than 64 bits hold
    std::vector<tallyfox::UsageSample> samples;
};

Verdict claude(const std::vector<std::string>& lines);
Verdict codex(const std::vector<std::string>& lines);

/// What a rate-limit reply says; nothing where the oracle cannot tell.
std::optional<std::variant<tallyfox::QuotaSnapshot, tallyfox::DecodingError>> reply(const std::string& line);

} // namespace usageOracle
