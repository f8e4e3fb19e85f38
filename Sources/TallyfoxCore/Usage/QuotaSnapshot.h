#pragma once

#include "TallyfoxCore/Time/Instant.h"
#include "TallyfoxCore/Usage/Provider.h"

#include <cstdint>
#include <optional>

namespace tallyfox {

/// One rate-limit window.
struct QuotaWindow {
    double usedPercent = 0; ///< in percent, as reported: neither clamped nor rounded
    std::optional<Instant> resetsAt; ///< when the window resets
    std::optional<std::int64_t> windowMinutes; ///< length of the window, minutes

    friend bool operator==(const QuotaWindow&, const QuotaWindow&) = default;
};

/// The quota of one provider at one moment.
struct QuotaSnapshot {
    Provider provider = Provider::codex;
    QuotaWindow primary; ///< the main window
    std::optional<QuotaWindow> secondary; ///< if the source reports a second window
    MeasurementConfidence confidence = MeasurementConfidence::unknown;

    friend bool operator==(const QuotaSnapshot&, const QuotaSnapshot&) = default;
};

} // namespace tallyfox
