#pragma once

#include "Tallyfox/Agent/Charts/ChartData.h"
#include "Tallyfox/Agent/Popover/ChartPoint.h"
#include "TallyfoxCore/Time/Calendar.h"

#include <QDate>

#include <span>

namespace tallyfox {

/// The local date of a day's start.
QDate dayOf(Instant date, const Calendar& calendar);

/// `points` as a chart takes them: one series for each provider, in its colour, points or not, over all days that
/// any point has, earliest first. Points of titles that no provider has are left out.
ChartData chartContent(std::span<const ChartPoint> points, const Calendar& calendar);

} // namespace tallyfox
