#include "TallyfoxCore/Time/DayTable.h"

#include <algorithm>

namespace tallyfox {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::local_seconds;
using std::chrono::sys_seconds;

namespace {

std::optional<std::size_t> indexOfDay(const std::vector<local_days>& table, local_days day)
{
    const auto found = std::lower_bound(table.begin(), table.end(), day);
    if (found == table.end() || *found != day)
        return std::nullopt;
    return static_cast<std::size_t>(found - table.begin());
}

} // namespace

DayTable::DayTable(const Calendar& calendar, local_days first, local_days last)
{
    std::vector<local_days> present;
    for (local_days day = first; day <= last; day += days{1}) {
        if (const auto start = calendar.startOfDay(day)) {
            present.push_back(day);
            m_starts.push_back(*start);
        }
    }
    if (!present.empty())
        addSpans(calendar, present);
}

void DayTable::addSpans(const Calendar& calendar, const std::vector<local_days>& present)
{
    // Far enough beyond the last day that a clock change has no way back into it.
    const Instant end = m_starts.back() + days{3};
    for (Instant begin = m_starts.front(); begin < end;) {
        const ZoneOffset stretch = calendar.offsetAt(begin);
        const local_days day = calendar.dayOf(begin);
        m_spans.push_back({begin, indexOfDay(present, day)});
        const sys_seconds nextMidnight{local_seconds{day + days{1}}.time_since_epoch() - stretch.offset};
        begin = std::min(nextMidnight, stretch.end);
    }
}

std::optional<std::size_t> DayTable::indexOf(Instant instant) const
{
    const auto next = std::upper_bound(m_spans.begin(), m_spans.end(), instant,
                                       [](Instant at, const Span& span) { return at < span.begin; });
    if (next == m_spans.begin())
        return std::nullopt;
    return std::prev(next)->day;
}

} // namespace tallyfox
