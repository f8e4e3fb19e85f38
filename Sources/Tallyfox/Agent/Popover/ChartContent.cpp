#include "Tallyfox/Agent/Popover/ChartContent.h"

#include "Tallyfox/Agent/Theme/ProviderPresentation.h"

#include <algorithm>

namespace tallyfox {

namespace {

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

ChartSeries seriesOf(Provider provider, std::span<const ChartPoint> points, const std::vector<Instant>& dates)
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

QDate dayOf(Instant date, const Calendar& calendar)
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
        data.days.push_back(dayOf(date, calendar));
    for (const Provider provider : allProviders)
        data.series.push_back(seriesOf(provider, points, dates));
    return data;
}

} // namespace tallyfox
