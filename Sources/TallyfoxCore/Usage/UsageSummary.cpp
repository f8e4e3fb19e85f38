#include "TallyfoxCore/Usage/UsageSummary.h"

#include "TallyfoxCore/Usage/TokenSum.h"

#include <algorithm>

namespace tallyfox {

namespace {

constexpr std::int64_t daysOfYear = 365;
constexpr std::int64_t daysOfMonth = 30;

} // namespace

UsageSummary::UsageSummary(std::span<const UsageSample> samples, Instant now, const Calendar& calendar)
{
    const std::chrono::local_days today = calendar.dayOf(now);
    const DayTable table{calendar, today - std::chrono::days{daysOfYear - 1}, today};
    for (const Instant start : table.starts())
        last365Days.push_back({start, 0});
    for (const UsageSample& sample : samples) {
        if (const auto day = table.indexOf(sample.timestamp))
            last365Days[*day].tokens = tokenSum(last365Days[*day].tokens, sample.totalTokens);
    }
    last30Days = series(daysOfMonth);
    for (const DailyUsage& day : last30Days)
        totalTokens = tokenSum(totalTokens, day.tokens);
    if (!last30Days.empty())
        todayTokens = last30Days.back().tokens;
}

std::vector<DailyUsage> UsageSummary::series(std::int64_t days) const
{
    const auto count =
        std::min(last365Days.size(), static_cast<std::size_t>(std::clamp(days, std::int64_t{1}, daysOfYear)));
    return {last365Days.end() - static_cast<std::ptrdiff_t>(count), last365Days.end()};
}

} // namespace tallyfox
