#include "TallyfoxCore/Time/Calendar.h"

#include "TallyfoxCore/Time/TimeZoneFile.h"
#include "TallyfoxCore/Time/TimeZoneRule.h"

#include <algorithm>
#include <fstream>
#include <memory>
#include <system_error>
#include <utility>

namespace tallyfox {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::local_seconds;
using std::chrono::seconds;
using std::chrono::sys_seconds;
using std::filesystem::path;

namespace {

constexpr std::size_t longestName = 255; ///< bytes of a `TZ` value; nothing longer is a zone or a rule

template <typename Zone> Calendar calendarOf(std::string name, Zone zone)
{
    return {std::move(name), [shared = std::make_shared<const Zone>(std::move(zone))](sys_seconds time) {
                return shared->offsetAt(time);
            }};
}

/// `file` relative to the folder of zones; nothing if it is not below it.
std::optional<std::string> zoneName(const path& file, const path& zones)
{
    const path relative = file.lexically_normal().lexically_relative(zones.lexically_normal());
    if (relative.empty() || relative == "." || *relative.begin() == "..")
        return std::nullopt;
    return relative.string();
}

std::optional<Calendar> calendarOfFile(const path& file, std::string name)
{
    auto zone = TimeZoneFile::read(file);
    return zone ? std::optional{calendarOf(std::move(name), *std::move(zone))} : std::nullopt;
}

/// The zone of the database that the system's setting links to, directly or through other links.
std::optional<std::string> nameBehindLink(path link, const path& zones)
{
    constexpr int longestChain = 40;
    for (int step = 0; step < longestChain; ++step) {
        std::error_code error;
        const path target = std::filesystem::read_symlink(link, error);
        if (error)
            return std::nullopt;
        link = link.parent_path() / target;
        if (auto name = zoneName(link, zones))
            return name;
    }
    return std::nullopt;
}

/// The name in the system's file for it, for a setting that is a copy of the zone.
std::optional<std::string> nameInFile(const Calendar::Database& database)
{
    std::ifstream stream{database.zoneName};
    std::string name;
    std::getline(stream, name);
    if (name.empty() || name.size() > longestName)
        return std::nullopt;
    return zoneName(database.zones / name, database.zones);
}

std::optional<std::size_t> indexOfDay(const std::vector<local_days>& table, local_days day)
{
    const auto found = std::lower_bound(table.begin(), table.end(), day);
    if (found == table.end() || *found != day)
        return std::nullopt;
    return static_cast<std::size_t>(found - table.begin());
}

} // namespace

Calendar::Calendar(std::string name, OffsetAt offsetAt)
    : m_name(std::move(name))
    , m_offsetAt(std::move(offsetAt))
{ }

Calendar Calendar::utc()
{
    return {"UTC", [](sys_seconds) { return ZoneOffset::always(seconds{0}); }};
}

std::optional<Calendar> Calendar::named(std::string_view timeZone)
{
    return named(timeZone, Database{});
}

std::optional<Calendar> Calendar::named(std::string_view timeZone, const Database& database)
{
    if (timeZone.starts_with(':'))
        timeZone.remove_prefix(1);
    if (timeZone.empty())
        return utc();
    if (timeZone.size() > longestName || timeZone.find('\0') != std::string_view::npos)
        return std::nullopt;
    if (timeZone == database.localTime.native())
        return ofSystem(database);
    if (const auto name = zoneName(database.zones / timeZone, database.zones)) {
        if (auto calendar = calendarOfFile(database.zones / *name, *name))
            return calendar;
    }
    if (const auto rule = TimeZoneRule::parse(timeZone))
        return calendarOf(std::string{timeZone}, *rule);
    return std::nullopt;
}

std::optional<Calendar> Calendar::ofSystem()
{
    return ofSystem(Database{});
}

std::optional<Calendar> Calendar::ofSystem(const Database& database)
{
    auto name = nameBehindLink(database.localTime, database.zones);
    if (!name)
        name = nameInFile(database);
    return calendarOfFile(database.localTime, name.value_or("localtime"));
}

ZoneOffset Calendar::offsetAt(Instant instant) const
{
    const auto time = floor<seconds>(instant);
    return m_offsetAt(std::clamp(time, ZoneOffset::earliest, ZoneOffset::latest - seconds{1}));
}

local_days Calendar::dayOf(Instant instant) const
{
    const auto local = instant.time_since_epoch() + offsetAt(instant).offset;
    return local_days{floor<days>(local)};
}

std::optional<Instant> Calendar::startOfDay(local_days day) const
{
    constexpr local_days firstDay{std::chrono::year{0} / 1 / 1};
    constexpr local_days lastDay{std::chrono::year{10000} / 12 / 31};
    if (day < firstDay || day > lastDay)
        return std::nullopt;

    // A day begins at midnight or with a clock change that skips it: trying every stretch around finds both.
    constexpr days reach{2}; // more than any offset from UTC
    const sys_seconds utcMidnight{local_seconds{day}.time_since_epoch()};
    for (sys_seconds time = utcMidnight - reach; time < utcMidnight + reach;) {
        const ZoneOffset stretch = m_offsetAt(time);
        const sys_seconds first = std::max(stretch.begin, utcMidnight - stretch.offset);
        const local_seconds local{(first + stretch.offset).time_since_epoch()};
        if (first < stretch.end && floor<days>(local) == day)
            return first;
        time = std::max(stretch.end, time + seconds{1});
    }
    return std::nullopt;
}

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
    // So far beyond the last day that no clock change leads back into it.
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
