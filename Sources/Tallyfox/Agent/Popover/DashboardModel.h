#pragma once

#include "Tallyfox/Agent/Popover/ChartPoint.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tallyfox::DashboardModel {

/// Today's tokens of all states. Sums beyond 64 bits end the program (TokenSum.h), here and below.
std::int64_t todayTokens(std::span<const ProviderState> states);

/// The tokens of the last 30 days of all states, whatever range the chart shows.
std::int64_t totalTokens(std::span<const ProviderState> states);

/// What `totalTokens` would cost at three dollars for a million tokens, whichever provider and kind: "$3.70".
std::string hypotheticalCost(std::span<const ProviderState> states);

/// The last `range` days of each state, state after state, oldest day first.
std::vector<ChartPoint> chartPoints(std::span<const ProviderState> states, std::int64_t range);

/// The year's days of the first state, with the tokens of all states added up position by position; empty without
/// states. A state with fewer days than the first is a programming error and ends the program.
std::vector<DailyUsage> combinedDays(std::span<const ProviderState> states);

/// The tokens of the busiest day, and at least 1, so that one may divide by it.
std::int64_t maxTokens(std::span<const DailyUsage> days);

/// How dense a day's cell is: 0.08 without tokens, else from 0.2 up to 1.0 for the busiest day. A count below zero,
/// which only a damaged history has, is none.
double heatOpacity(std::int64_t tokens, std::int64_t maxTokens);

} // namespace tallyfox::DashboardModel
