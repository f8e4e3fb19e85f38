#include "Tallyfox/Terminal/SummaryTable.h"

#include "Tallyfox/Terminal/DateText.h"
#include "Tallyfox/Terminal/SummaryRows.h"

#include <algorithm>
#include <cmath>

namespace tallyfox::SummaryTable {

namespace {

constexpr std::size_t widestTable = 80;
constexpr std::string_view gap = "   ";
constexpr std::string_view indent = "  ";

/// The widths that line up the rows of all providers.
struct Columns {
    std::size_t label = 0;
    std::size_t figure = 0;
    std::size_t exact = 0;
    std::size_t note = 0; ///< of the rows with a bar
    std::size_t bar = 0; ///< what is left for the bar; 0 for none

    void widenTo(const SummaryRow& row)
    {
        label = std::max(label, columnsOf(row.label));
        figure = std::max(figure, columnsOf(row.figure));
        exact = std::max(exact, columnsOf(row.exact));
        if (row.share)
            note = std::max(note, columnsOf(row.note));
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

Tone toneOf(SourceHealth health)
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

std::string headLine(const SummaryFigures& figures, const TextStyle& style)
{
    constexpr std::string_view name = "Tallyfox";
    const std::string zone = withoutControls(figures.calendar.timeZoneName());
    const std::string when = figures.lastUpdated
        ? DateText::localDayAndTime(*figures.lastUpdated, figures.calendar) + " · " + zone
        : "not refreshed yet · " + zone;
    const std::size_t width = std::min(style.columns, widestTable);
    const std::size_t taken = name.size() + columnsOf(when);
    const std::size_t blanks = std::max(gap.size(), width > taken ? width - taken : 0);
    return style.paint(Tone::strong, name) + std::string(blanks, ' ') + style.paint(Tone::quiet, when) + '\n';
}

std::string stateLine(const ProviderState& state, const Columns& columns, const TextStyle& style)
{
    const std::string title = padRight(traitsOf(state.provider).title, indent.size() + columns.label);
    return style.paint(Tone::strong, title) + std::string{gap}
    + style.paint(toneOf(state.health), rawValue(state.health)) + " · " + withoutControls(state.detail) + '\n';
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

std::string footLine(const SummaryFigures& figures, const Columns& columns, const TextStyle& style)
{
    const auto percent = figures.combinedPercent;
    const std::string text = percent ? std::to_string(*percent) + '%' : percentText(std::nullopt);
    const Tone tone = percent ? toneOfPercent(static_cast<double>(*percent)) : Tone::quiet;
    return padRight("In use", indent.size() + columns.label) + std::string{gap}
    + style.paint(tone, padLeft(text, columns.figure)) + std::string{gap}
    + style.paint(Tone::quiet, percent ? "of the quota that is used most" : "no quota is known") + '\n';
}

} // namespace

std::string text(const SummaryFigures& figures, Instant now, const TextStyle& style)
{
    std::vector<std::vector<SummaryRow>> blocks;
    Columns columns;
    for (const ProviderState& state : figures.states) {
        blocks.push_back(summaryRows(state, now, figures.calendar));
        for (const SummaryRow& row : blocks.back())
            columns.widenTo(row);
    }
    columns.fitBar(std::min(style.columns, widestTable));

    std::string table = headLine(figures, style);
    for (std::size_t index = 0; index < blocks.size(); ++index) {
        table += '\n' + stateLine(figures.states[index], columns, style);
        for (const SummaryRow& row : blocks[index])
            table += rowLine(row, columns, style);
    }
    return table + '\n' + footLine(figures, columns, style);
}

} // namespace tallyfox::SummaryTable
