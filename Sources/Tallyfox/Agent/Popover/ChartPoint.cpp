#include "Tallyfox/Agent/Popover/ChartPoint.h"

#include <array>
#include <charconv>

namespace tallyfox {

namespace {

/// The shortest decimal that reads back as the same number, always with a fraction.
std::string shortestDecimal(double value)
{
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed).ptr;
    std::string text{digits.begin(), end};
    return text.find('.') == std::string::npos ? text + ".0" : text;
}

} // namespace

std::string ChartPoint::id() const
{
    const std::chrono::duration<double> sinceEpoch = date.time_since_epoch();
    return provider + '-' + shortestDecimal(sinceEpoch.count());
}

std::vector<ChartPoint> chartPoints(Provider provider, std::span<const DailyUsage> days)
{
    std::vector<ChartPoint> points;
    points.reserve(days.size());
    for (const DailyUsage& day : days)
        points.push_back({std::string{traitsOf(provider).title}, day.date, day.tokens});
    return points;
}

std::vector<ChartPoint> trendPoints(std::span<const ProviderState> states)
{
    std::vector<ChartPoint> points;
    for (const ProviderState& state : states) {
        const auto ofState = chartPoints(state.provider, state.summary.last30Days);
        points.insert(points.end(), ofState.begin(), ofState.end());
    }
    return points;
}

} // namespace tallyfox
