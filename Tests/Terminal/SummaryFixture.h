#pragma once

#include "Support/Moments.h"
#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <vector>

namespace tallyfox::test {

inline const Instant summaryNow = utcTime(2026, 11, 21, 9, 41, 7) + std::chrono::milliseconds{123};

/// Samples of one provider today and 20 days ago.
inline UsageSummary summaryOf(std::int64_t today, std::int64_t earlier, const Calendar& calendar)
{
    std::vector<UsageSample> samples(2);
    samples[0].timestamp = summaryNow;
    samples[0].totalTokens = today;
    samples[1].timestamp = summaryNow - std::chrono::days{20};
    samples[1].totalTokens = earlier;
    return {samples, summaryNow, calendar};
}

/// Both providers after a refresh: Claude with local history, Codex connected with two quota windows.
inline UsageSnapshot connectedFigures()
{
    UsageSnapshot figures;
    figures.calendar = zone("Europe/Berlin");
    figures.lastUpdated = summaryNow;
    figures.now = summaryNow;
    figures.combinedPercent = 43;
    figures.hasHomeAccess = true;
    figures.states = {initialState(Provider::claude, summaryNow, figures.calendar),
                      initialState(Provider::codex, summaryNow, figures.calendar)};
    ProviderState& claude = figures.states[0];
    claude.summary = summaryOf(890, 1'233'677, figures.calendar);
    claude.health = SourceHealth::localOnly;
    claude.detail = "Observed from local history";
    claude.updatedAt = summaryNow;
    ProviderState& codex = figures.states[1];
    codex.summary = summaryOf(12'345, 0, figures.calendar);
    codex.health = SourceHealth::connected;
    codex.detail = "Official usage API";
    codex.updatedAt = summaryNow;
    codex.quota = QuotaSnapshot{
        .provider = Provider::codex,
        .primary = {.usedPercent = 42.5, .resetsAt = utcTime(2026, 11, 21, 12), .windowMinutes = 300},
        .secondary = QuotaWindow{.usedPercent = 91, .resetsAt = utcTime(2026, 11, 24, 12), .windowMinutes = 10'080},
        .confidence = MeasurementConfidence::exact};
    return figures;
}

} // namespace tallyfox::test
