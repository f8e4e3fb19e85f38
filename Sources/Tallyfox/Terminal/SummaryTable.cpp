#include "Tallyfox/Terminal/SummaryTable.h"

#include "Tallyfox/Engine/CommandLine/TokenText.h"
#include "Tallyfox/Terminal/DateText.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

namespace tallyfox::SummaryTable {

namespace {

constexpr std::size_t widestTable = 80;
constexpr std::string_view gap = "   ";
constexpr std::string_view indent = "  ";
constexpr std::string_view missing = "—";

/// One line below a provider's name.
struct SummaryRow {
    std::string label{};
    std::string figure{}; ///< a compact count or a percentage; "—" for none
    std::string exact{}; ///< the exact count; empty for percentages
    std::optional<double> share{}; ///< percent, for a bar
    std::string note{};
    Tone tone = Tone::plain;
};

/// "43%": rounded to the nearest integer, halves away from zero; "—" for NaN and numbers from 1e15.
std::string percentText(double percent)
{
    constexpr double most = 1e15; // from about here a double does not represent every integer
    if (!(std::abs(percent) < most))
        return std::string{missing};
    return std::to_string(std::llround(percent)) + '%';
}

/// The tone of a percentage in use.
Tone toTone(double percent)
{
    constexpr double highFrom = 70;
    constexpr double nearlyUsedUpFrom = 90;
    if (percent >= nearlyUsedUpFrom)
        return Tone::bad;
    return percent >= highFrom ? Tone::notice : Tone::good;
}

SummaryRow makeTokenRow(std::string label, std::int64_t tokens, const ProviderState& state)
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

/// "Quota 5 h" for a window of 300 minutes; "Quota" if its length is unknown or implausible.
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

SummaryRow makeWindowRow(const QuotaWindow& window, Instant now, const Calendar& calendar)
{
    return {.label = windowLabel(window),
            .figure = percentText(window.usedPercent),
            .exact = {},
            .share = window.usedPercent,
            .note = resetNote(window, now, calendar),
            .tone = toTone(window.usedPercent)};
}

/// The rows of one provider: today, 30 days, and one per quota window.
std::vector<SummaryRow> makeRows(const ProviderState& state, Instant now, const Calendar& calendar)
{
    std::vector<SummaryRow> rows{makeTokenRow("Today", state.summary.todayTokens, state),
                                 makeTokenRow("30 days", state.summary.totalTokens, state)};
    if (!state.quota) {
        rows.push_back({.label = "Quota", .figure = std::string{missing}, .tone = Tone::quiet});
        return rows;
    }
    rows.push_back(makeWindowRow(state.quota->primary, now, calendar));
    if (state.quota->secondary)
        rows.push_back(makeWindowRow(*state.quota->secondary, now, calendar));
    return rows;
}

/// The widths that align the rows of all providers.
struct Columns {
    std::size_t label = 0;
    std::size_t figure = 0;
    std::size_t exact = 0;
    std::size_t note = 0; ///< of the rows with a bar
    std::size_t bar = 0; ///< the remaining width; 0 for no bar

    void widenTo(const SummaryRow& row)
    {
        label = std::max(label, countColumns(row.label));
        figure = std::max(figure, countColumns(row.figure));
        exact = std::max(exact, countColumns(row.exact));
        if (row.share)
            note = std::max(note, countColumns(row.note));
    }

    void fitBar(std::size_t columns)
    {
        constexpr std::size_t longest = 20;
        constexpr std::size_t shortest = 5;
        const std::size_t taken = indent.size() + label + gap.size() + figure + gap.size() + gap.size() + note;
        const std::size_t left = columns > taken ? columns - taken : 0;
        bar = left < shortest ? 0 : std::min(left, longest);
    }
};

std::string bar(double percent, std::size_t cells)
{
    const double share = std::isfinite(percent) ? std::clamp(percent, 0.0, 100.0) / 100 : 0;
    const auto full = static_cast<std::size_t>(std::lround(share * static_cast<double>(cells)));
    std::string text;
    for (std::size_t cell = 0; cell < cells; ++cell)
        text += cell < full ? "█" : "░";
    return text;
}

Tone toTone(SourceHealth health)
{
    switch (health) {
    case SourceHealth::connected:
    case SourceHealth::localOnly:
        return Tone::good;
    case SourceHealth::stale:
    case SourceHealth::permissionRequired:
        return Tone::notice;
    case SourceHealth::unavailable:
        break;
    }
    return Tone::quiet;
}

std::string headLine(const UsageSnapshot& snapshot, const TextStyle& style)
{
    constexpr std::string_view name = "Tallyfox";
    const std::string zone = replaceControls(snapshot.calendar.timeZoneName());
    const std::string when = snapshot.lastUpdated
        ? DateText::localDayAndTime(*snapshot.lastUpdated, snapshot.calendar) + " · " + zone
        : "not refreshed yet · " + zone;
    const std::size_t width = std::min(style.columns, widestTable);
    const std::size_t taken = name.size() + countColumns(when);
    const std::size_t blanks = std::max(gap.size(), width > taken ? width - taken : 0);
    return style.paint(Tone::strong, name) + std::string(blanks, ' ') + style.paint(Tone::quiet, when) + '\n';
}

std::string stateLine(const ProviderState& state, const Columns& columns, const TextStyle& style)
{
    const std::string title = padRight(traitsOf(state.provider).title, indent.size() + columns.label);
    return style.paint(Tone::strong, title) + std::string{gap}
    + style.paint(toTone(state.health), rawValue(state.health)) + " · " + replaceControls(state.detail) + '\n';
}

std::string rowLine(const SummaryRow& row, const Columns& columns, const TextStyle& style)
{
    std::string line = std::string{indent} + padRight(row.label, columns.label) + std::string{gap}
        + style.paint(row.tone, padLeft(row.figure, columns.figure));
    if (!row.exact.empty())
        line += std::string{gap} + style.paint(Tone::quiet, padLeft(row.exact, columns.exact) + ' ' + row.note);
    else if (row.share && columns.bar > 0)
        line += std::string{gap} + style.paint(row.tone, bar(*row.share, columns.bar)) + std::string{gap} + row.note;
    else if (!row.note.empty())
        line += std::string{gap} + row.note;
    return line + '\n';
}

std::string footLine(const UsageSnapshot& snapshot, const Columns& columns, const TextStyle& style)
{
    const auto percent = snapshot.combinedPercent;
    const std::string text = percent ? std::to_string(*percent) + '%' : std::string{missing};
    const Tone tone = percent ? toTone(static_cast<double>(*percent)) : Tone::quiet;
    return padRight("In use", indent.size() + columns.label) + std::string{gap}
    + style.paint(tone, padLeft(text, columns.figure)) + std::string{gap}
    + style.paint(Tone::quiet, percent ? "of the quota that is used most" : "no quota is known") + '\n';
}

} // namespace

std::string text(const UsageSnapshot& snapshot, const TextStyle& style)
{
    std::vector<std::vector<SummaryRow>> blocks;
    Columns columns;
    for (const ProviderState& state : snapshot.states) {
        blocks.push_back(makeRows(state, snapshot.now, snapshot.calendar));
        for (const SummaryRow& row : blocks.back())
            columns.widenTo(row);
    }
    columns.fitBar(std::min(style.columns, widestTable));

    std::string table = headLine(snapshot, style);
    for (std::size_t index = 0; index < blocks.size(); ++index) {
        table += '\n' + stateLine(snapshot.states[index], columns, style);
        for (const SummaryRow& row : blocks[index])
            table += rowLine(row, columns, style);
    }
    return table + '\n' + footLine(snapshot, columns, style);
}

} // namespace tallyfox::SummaryTable
