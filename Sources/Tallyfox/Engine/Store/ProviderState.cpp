#include "Tallyfox/Engine/Store/ProviderState.h"

#include "TallyfoxCore/Usage/TokenSum.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>

namespace tallyfox {

namespace {

UsageSummary chooseSummary(const ProviderUpdate& update, const ProviderState* previous, Instant now,
                           const Calendar& calendar)
{
    if (update.summary)
        return *update.summary;
    return previous ? previous->summary : UsageSummary{{}, now, calendar};
}

std::optional<QuotaSnapshot> chooseQuota(const ProviderUpdate& update, const ProviderState* previous)
{
    if (update.quota || !previous)
        return update.quota;
    return previous->quota;
}

bool outlivedFailure(const ProviderUpdate& update, const ProviderState* previous)
{
    return update.quotaFailed && !update.quota && previous && previous->quota;
}

bool hasHistory(const UsageSummary& summary)
{
    return std::any_of(summary.last365Days.begin(), summary.last365Days.end(),
                       [](const DailyUsage& day) { return day.tokens > 0; });
}

struct Badge {
    SourceHealth health;
    std::string_view detail;
};

/// The first case that applies wins. Only a quota fetched by this update counts as connected, not one that was kept.
Badge chooseBadge(const ProviderUpdate& update, const ProviderState& next)
{
    if (next.isQuotaStale)
        return {SourceHealth::stale, QT_TRANSLATE_NOOP("UsageStore", "Showing last successful quota")};
    if (update.quota)
        return {SourceHealth::connected, QT_TRANSLATE_NOOP("UsageStore", "Official usage API")};
    if (update.historyPermissionRequired)
        return {SourceHealth::permissionRequired, QT_TRANSLATE_NOOP("UsageStore", "Home folder access required")};
    if (!hasHistory(next.summary))
        return {SourceHealth::unavailable, QT_TRANSLATE_NOOP("UsageStore", "Log in via CLI and refresh")};
    return {SourceHealth::localOnly,
            update.isPartialHistory ? QT_TRANSLATE_NOOP("UsageStore", "Partial local history")
                                    : QT_TRANSLATE_NOOP("UsageStore", "Observed from local history")};
}

std::int64_t roundedPercent(double percent)
{
    constexpr double limit = 0x1p63; // the first double beyond the signed 64-bit integers
    const double rounded = std::round(percent);
    if (!(rounded >= -limit && rounded < limit))
        stopProgram("the quota percentage is no number that 64 bits hold");
    return static_cast<std::int64_t>(rounded);
}

} // namespace

std::string_view rawValue(SourceHealth health)
{
    switch (health) {
    case SourceHealth::connected:
        return QT_TRANSLATE_NOOP("UsageStore", "Connected");
    case SourceHealth::localOnly:
        return QT_TRANSLATE_NOOP("UsageStore", "Local history");
    case SourceHealth::stale:
        return QT_TRANSLATE_NOOP("UsageStore", "Stale");
    case SourceHealth::permissionRequired:
        return QT_TRANSLATE_NOOP("UsageStore", "Permission");
    case SourceHealth::unavailable:
        break;
    }
    return QT_TRANSLATE_NOOP("UsageStore", "Unavailable");
}

ProviderState initialState(Provider provider, Instant now, const Calendar& calendar)
{
    ProviderState state;
    state.provider = provider;
    state.summary = UsageSummary{{}, now, calendar};
    state.detail = QT_TRANSLATE_NOOP("UsageStore", "Waiting for first refresh");
    return state;
}

ProviderState merge(const ProviderUpdate& update, const ProviderState* previous, Instant now, const Calendar& calendar)
{
    ProviderState next;
    next.provider = update.provider;
    next.summary = chooseSummary(update, previous, now, calendar);
    next.quota = chooseQuota(update, previous);
    next.isQuotaStale = outlivedFailure(update, previous);
    const auto [health, detail] = chooseBadge(update, next);
    next.health = health;
    next.detail = detail;
    if (update.summary || update.quota)
        next.updatedAt = update.attemptedAt;
    else if (previous)
        next.updatedAt = previous->updatedAt;
    if (update.summary)
        next.isPartialHistory = update.isPartialHistory;
    else if (previous)
        next.isPartialHistory = previous->isPartialHistory;
    return next;
}

std::optional<std::int64_t> combinedPercent(const std::vector<ProviderState>& states)
{
    std::optional<double> highest;
    for (const ProviderState& state : states) {
        if (!state.quota)
            continue;
        const double percent = state.quota->primary.usedPercent;
        if (std::isnan(percent)) // std::max would silently ignore it
            stopProgram("the quota percentage is no number that 64 bits hold");
        highest = highest ? std::max(*highest, percent) : percent;
    }
    return highest ? std::optional{roundedPercent(*highest)} : std::nullopt;
}

} // namespace tallyfox
