#include "Tallyfox/Terminal/SummaryRows.h"

#include "Tallyfox/Engine/CommandLine/TokenText.h"
#include "Tallyfox/Terminal/DateText.h"

#include <cmath>
#include <string_view>

namespace tallyfox {

namespace {

constexpr std::string_view missing = "—";

SummaryRow tokenRow(std::string label, std::int64_t tokens, const ProviderState& state)
{
    SummaryRow row{.label = std::move(label), .tone = Tone::strong};
    if (state.health == SourceHealth::permissionRequired) {
        row.figure = missing;
        row.tone = Tone::quiet;
        return row;
    }
    row.figure = tokenText(tokens);
    row.exact = exactTokenText(tokens);
    row.note = state.isPartialHistory ? "tokens at least, history read in part" : "tokens";
    return row;
}

/// "Quota 5 h" for a window of 300 minutes; plain "Quota" where its length is not reported or means nothing.
std::string windowLabel(const QuotaWindow& window)
{
    constexpr std::int64_t minutesPerHour = 60;
    constexpr std::int64_t minutesPerDay = 24 * minutesPerHour;
    constexpr std::int64_t mostDays = 999;
    const std::int64_t minutes = window.windowMinutes.value_or(0);
    if (minutes <= 0 || minutes > mostDays * minutesPerDay)
        return "Quota";
    if (minutes % minutesPerDay == 0)
        return "Quota " + std::to_string(minutes / minutesPerDay) + " d";
    if (minutes % minutesPerHour == 0)
        return "Quota " + std::to_string(minutes / minutesPerHour) + " h";
    return "Quota " + std::to_string(minutes) + " min";
}

std::string resetNote(const QuotaWindow& window, Instant now, const Calendar& calendar)
{
    if (!window.resetsAt)
        return "reset not reported";
    const std::string when =
        DateText::relative(*window.resetsAt, now) + " (" + DateText::localMoment(*window.resetsAt, now, calendar) + ')';
    return (*window.resetsAt < now ? "reset was due " : "resets ") + when;
}

SummaryRow windowRow(const QuotaWindow& window, Instant now, const Calendar& calendar)
{
    return {.label = windowLabel(window),
            .figure = percentText(window.usedPercent),
            .exact = {},
            .share = window.usedPercent,
            .note = resetNote(window, now, calendar),
            .tone = toneOfPercent(window.usedPercent)};
}

} // namespace

std::vector<SummaryRow> summaryRows(const ProviderState& state, Instant now, const Calendar& calendar)
{
    std::vector<SummaryRow> rows{tokenRow("Today", state.summary.todayTokens, state),
                                 tokenRow("30 days", state.summary.totalTokens, state)};
    if (!state.quota) {
        rows.push_back({.label = "Quota", .figure = std::string{missing}, .tone = Tone::quiet});
        return rows;
    }
    rows.push_back(windowRow(state.quota->primary, now, calendar));
    if (state.quota->secondary)
        rows.push_back(windowRow(*state.quota->secondary, now, calendar));
    return rows;
}

std::string percentText(std::optional<double> percent)
{
    constexpr double most = 1e15; // beyond it a double does not hold every integer
    if (!percent || !(std::abs(*percent) < most))
        return std::string{missing};
    return std::to_string(std::llround(*percent)) + '%';
}

Tone toneOfPercent(double percent)
{
    constexpr double highFrom = 70;
    constexpr double nearlyUsedUpFrom = 90;
    if (percent >= nearlyUsedUpFrom)
        return Tone::bad;
    return percent >= highFrom ? Tone::notice : Tone::good;
}

} // namespace tallyfox
