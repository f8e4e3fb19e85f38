#pragma once

#include "TallyfoxCore/Time/Instant.h"
#include "TallyfoxCore/Usage/Provider.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tallyfox {

/// One measured usage event. Counts are tokens, verbatim from the history: not clamped, so they may be negative.
struct UsageSample {
    Provider provider = Provider::claude; ///< tool whose history the sample came from
    Instant timestamp = distantPast; ///< moment of the event
    std::optional<std::string> model; ///< model name where the record carries one (Claude only)
    std::int64_t inputTokens = 0;
    std::int64_t outputTokens = 0;
    std::int64_t cachedInputTokens = 0; ///< input tokens served from cache
    std::int64_t reasoningTokens = 0; ///< reasoning output tokens; 0 for Claude
    std::int64_t totalTokens = 0; ///< what totals add up; stored, never recomputed from the other counts
    MeasurementConfidence confidence = MeasurementConfidence::unknown;

    friend bool operator==(const UsageSample&, const UsageSample&) = default;
};

} // namespace tallyfox
