#include "Tallyfox/Agent/Popover/DashboardModel.h"

#include "TallyfoxCore/Usage/TokenSum.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tallyfox::DashboardModel {

namespace {

constexpr std::int64_t daysOfYear = 365;
constexpr double dollarsPerToken = 0.000003;

std::int64_t sumOver(std::span<const ProviderState> states, std::int64_t UsageSummary::*tokens)
{
    std::int64_t sum = 0;
    for (const ProviderState& state : states)
        sum = tokenSum(sum, state.summary.*tokens);
    return sum;
}

} // namespace

std::int64_t todayTokens(std::span<const ProviderState> states)
{
    return sumOver(states, &UsageSummary::todayTokens);
}

std::int64_t totalTokens(std::span<const ProviderState> states)
{
    return sumOver(states, &UsageSummary::totalTokens);
}

std::string hypotheticalCost(std::span<const ProviderState> states)
{
    std::array<char, 32> digits{};
    const double dollars = static_cast<double>(totalTokens(states)) * dollarsPerToken;
    // Unlike printf, always with a decimal point.
    const auto end = std::to_chars(digits.begin(), digits.end(), dollars, std::chars_format::fixed, 2).ptr;
    return '$' + std::string{digits.begin(), end};
}

std::vector<ChartPoint> chartPoints(std::span<const ProviderState> states, std::int64_t range)
{
    std::vector<ChartPoint> points;
    for (const ProviderState& state : states) {
        const auto statePoints = tallyfox::chartPoints(state.provider, state.summary.series(range));
        points.insert(points.end(), statePoints.begin(), statePoints.end());
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
            stopProgram("the daily series of the providers differ in length");
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
    constexpr double withoutTokens = 0.08;
    constexpr double lowest = 0.2;
    if (tokens <= 0)
        return withoutTokens;
    const double share = static_cast<double>(tokens) / static_cast<double>(maxTokens);
    return std::min(1.0, share * (1 - lowest) + lowest);
}

} // namespace tallyfox::DashboardModel
