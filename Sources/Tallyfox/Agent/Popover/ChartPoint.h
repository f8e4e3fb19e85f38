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

/// One day of one provider, as the charts plot it.
struct ChartPoint {
    std::string provider{}; ///< the provider's title: also the key of its series
    Instant date = distantPast; ///< start of the day
    std::int64_t tokens = 0;

    /// The provider and the day's start in seconds since 1970, in the fewest digits that tell it:
    /// "Claude-1731628800.0". No two points of a chart share it, as no provider has a day twice.
    [[nodiscard]] std::string id() const;

    friend bool operator==(const ChartPoint&, const ChartPoint&) = default;
};

/// A point for each of `days`, in their order.
std::vector<ChartPoint> chartPoints(Provider provider, std::span<const DailyUsage> days);

/// The last 30 days of each state, state after state, oldest day first; days without tokens included.
std::vector<ChartPoint> trendPoints(std::span<const ProviderState> states);

/// The local date of a day's start.
QDate dayOf(Instant date, const Calendar& calendar);

/// `points` as a chart takes them: one series for each provider, in its colour, points or not, over all days that
/// any point has, earliest first. Points of titles that no provider has are left out.
ChartData chartContent(std::span<const ChartPoint> points, const Calendar& calendar);

} // namespace tallyfox
