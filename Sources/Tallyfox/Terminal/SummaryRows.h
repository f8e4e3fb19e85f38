#pragma once

#include "Tallyfox/Engine/CommandLine/TextStyle.h"
#include "Tallyfox/Engine/Store/SummaryFigures.h"

#include <optional>
#include <string>
#include <vector>

namespace tallyfox {

/// One line below a provider's name: what it is about, the figure, and what there is to say about it.
struct SummaryRow {
    std::string label{};
    std::string figure{}; ///< a compact count or a percentage; "—" for none
    std::string exact{}; ///< the count to the last digit; empty for percentages
    std::optional<double> share{}; ///< percent, for a bar
    std::string note{};
    Tone tone = Tone::plain;
};

/// The rows of one provider: today, 30 days, and one per quota window.
std::vector<SummaryRow> summaryRows(const ProviderState& state, Instant now, const Calendar& calendar);

/// A percentage rounded to the nearest integer, halves away from zero: "43%". "—" for what is no number of any use.
std::string percentText(std::optional<double> percent);

/// How pressing a percentage is.
Tone toneOfPercent(double percent);

} // namespace tallyfox
