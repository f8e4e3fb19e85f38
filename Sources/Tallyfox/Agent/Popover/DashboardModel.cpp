#include "Tallyfox/Agent/Popover/DashboardModel.h"

#include "TallyfoxCore/Usage/ProgrammingErrors.h"
#include "TallyfoxCore/Usage/TokenSum.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tallyfox::DashboardModel {

namespace {

constexpr std::int64_t daysOfYear = 365;
constexpr double dollarsPerToken = 0.000003;

std::int64_t sumOf(std::span<const ProviderState> states, std::int64_t UsageSummary::*tokens)
{
    std::int64_t sum = 0;
    for (const ProviderState& state : states)
        sum = tokenSum(sum, state.summary.*tokens);
    return sum;
}

} // namespace

std::int64_t todayTokens(std::span<const ProviderState> states)
{
    return sumOf(states, &UsageSummary::todayTokens);
}

std::int64_t totalTokens(std::span<const ProviderState> states)
{
    return sumOf(states, &UsageSummary::totalTokens);
}

std::string hypotheticalCost(std::span<const ProviderState> states)
{
    std::array<char, 32> digits{};
    const double dollars = static_cast<double>(totalTokens(states)) * dollarsPerToken;
    // Unlike printf, with a point in every locale.
    const auto end = std::to_chars(digits.begin(), digits.end(), dollars, std::chars_format::fixed, 2).ptr;
    return '$' + std::string{digits.begin(), end};
}

std::vector<ChartPoint> chartPoints(std::span<const ProviderState> states, std::int64_t range)
{
    std::vector<ChartPoint> points;
    for (const ProviderState& state : states) {
        const auto ofState = tallyfox::chartPoints(state.provider, state.summary.series(range));
        points.insert(points.end(), ofState.begin(), ofState.end());
    }
    return points;
}

std::vector<DailyUsage> combinedDays(std::span<const ProviderState> states)
{
    if (states.empty())
        return {};
    std::vector<DailyUsage> days = states.front().summary.series(daysOfYear);
    for (const ProviderState& state : states.subspan(1)) {
        const std::vector<DailyUsage> series = state.summary.series(daysOfYear);
        if (series.size() < days.size())
            stopBecauseDailySeriesDiffer();
        for (std::size_t i = 0; i < days.size(); ++i)
            days[i].tokens = tokenSum(days[i].tokens, series[i].tokens);
    }
    return days;
}

std::int64_t maxTokens(std::span<const DailyUsage> days)
{
    std::int64_t largest = 1;
    for (const DailyUsage& day : days)
        largest = std::max(largest, day.tokens);
    return largest;
}

double heatOpacity(std::int64_t tokens, std::int64_t maxTokens)
{
    constexpr double ofNone = 0.08;
    constexpr double ofLeast = 0.2;
    if (tokens <= 0)
        return ofNone;
    const double share = static_cast<double>(tokens) / static_cast<double>(maxTokens);
    return std::min(1.0, share * (1 - ofLeast) + ofLeast);
}

} // namespace tallyfox::DashboardModel
