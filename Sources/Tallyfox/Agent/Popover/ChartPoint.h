#pragma once

#include "Tallyfox/Agent/Charts/Chart.h"
#include "Tallyfox/Engine/Store/ProviderState.h"
#include "TallyfoxCore/Time/Calendar.h"

#include <QDate>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tallyfox {

/// One day of one provider, as plotted by the charts.
struct ChartPoint {
    std::string provider{}; ///< the provider's title: also the key of its series
    Instant date = distantPast; ///< start of the day
    std::int64_t tokens = 0;

    /// The provider and the start of the day in seconds since 1970, in as few digits as possible:
    /// "Claude-1731628800.0". Unique within a chart, as no provider has a day twice.
    [[nodiscard]] std::string id() const;

    friend bool operator==(const ChartPoint&, const ChartPoint&) = default;
};

/// One point for each of `days`, in their order.
std::vector<ChartPoint> chartPoints(Provider provider, std::span<const DailyUsage> days);

/// The last 30 days of each state, one state after the other, oldest day first; includes days without tokens.
std::vector<ChartPoint> trendPoints(std::span<const ProviderState> states);

/// The local date of the start of a day.
QDate toDate(Instant date, const Calendar& calendar);

/// The data of a chart of `points`: their days, earliest first, and a series for every provider, in its colour, even
/// without points. Ignores points whose title is not that of a provider.
ChartData chartContent(std::span<const ChartPoint> points, const Calendar& calendar);

} // namespace tallyfox
