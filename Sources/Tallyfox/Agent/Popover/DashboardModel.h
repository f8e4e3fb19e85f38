#pragma once

#include "Tallyfox/Agent/Popover/ChartPoint.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tallyfox::DashboardModel {

/// Today's tokens of all states. Here and below, a sum beyond 64 bits ends the program (TokenSum.h).
std::int64_t todayTokens(std::span<const ProviderState> states);

/// The tokens of the last 30 days of all states, regardless of the chart's range.
std::int64_t totalTokens(std::span<const ProviderState> states);

/// What `totalTokens` would cost at three dollars per million tokens, whatever their provider and kind: "$3.70".
std::string hypotheticalCost(std::span<const ProviderState> states);

/// The last `range` days of each state, one state after the other, oldest day first.
std::vector<ChartPoint> chartPoints(std::span<const ProviderState> states, std::int64_t range);

/// The days of the last year, with the tokens of all states added up position by position; empty without states. The
/// dates are those of the first state. A state with fewer days is a programming error and ends the program.
std::vector<DailyUsage> combinedDays(std::span<const ProviderState> states);

/// The tokens of the busiest day, but at least 1, so that it can be a divisor.
std::int64_t maxTokens(std::span<const DailyUsage> days);

/// The opacity of a day's cell: 0.08 without tokens, otherwise from 0.2 to 1.0 for the busiest day. A negative count,
/// which only a damaged history has, counts as none.
double heatOpacity(std::int64_t tokens, std::int64_t maxTokens);

} // namespace tallyfox::DashboardModel
