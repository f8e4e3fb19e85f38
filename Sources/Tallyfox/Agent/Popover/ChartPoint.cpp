#include "Tallyfox/Agent/Popover/ChartPoint.h"

#include "Tallyfox/Agent/Theme/ProviderPresentation.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tallyfox {

namespace {

/// The shortest decimal that parses to the same number, always with a fraction.
std::string shortestDecimal(double value)
{
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed).ptr;
    std::string text{digits.begin(), end};
    return text.find('.') == std::string::npos ? text + ".0" : text;
}

std::vector<Instant> distinctDates(std::span<const ChartPoint> points)
{
    std::vector<Instant> dates;
    dates.reserve(points.size());
    for (const ChartPoint& point : points)
        dates.push_back(point.date);
    std::sort(dates.begin(), dates.end());
    dates.erase(std::unique(dates.begin(), dates.end()), dates.end());
    return dates;
}

ChartSeries makeSeries(Provider provider, std::span<const ChartPoint> points, const std::vector<Instant>& dates)
{
    ChartSeries series{providerTitle(provider), presentationOf(provider).color()};
    for (const ChartPoint& point : points) {
        if (point.provider != traitsOf(provider).title)
            continue;
        const auto day = std::lower_bound(dates.begin(), dates.end(), point.date) - dates.begin();
        series.values.push_back({static_cast<std::size_t>(day), point.tokens});
    }
    return series;
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
        const auto statePoints = chartPoints(state.provider, state.summary.last30Days);
        points.insert(points.end(), statePoints.begin(), statePoints.end());
    }
    return points;
}

QDate toDate(Instant date, const Calendar& calendar)
{
    const std::chrono::year_month_day day{calendar.dayOf(date)};
    return {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
            static_cast<int>(static_cast<unsigned>(day.day()))};
}

ChartData chartContent(std::span<const ChartPoint> points, const Calendar& calendar)
{
    const std::vector<Instant> dates = distinctDates(points);
    ChartData data;
    data.days.reserve(dates.size());
    for (const Instant date : dates)
        data.days.push_back(toDate(date, calendar));
    for (const Provider provider : allProviders)
        data.series.push_back(makeSeries(provider, points, dates));
    return data;
}

} // namespace tallyfox
