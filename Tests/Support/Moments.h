#pragma once

#include "TallyfoxCore/Time/Calendar.h"
#include "TallyfoxCore/Time/Instant.h"

#include <chrono>
#include <string_view>

namespace tallyfox::test {

inline std::chrono::local_days localDay(int year, unsigned month, unsigned day)
{
    return std::chrono::local_days{std::chrono::year{year} / std::chrono::month{month} / std::chrono::day{day}};
}

inline Instant utcTime(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0)
{
    return Instant{std::chrono::sys_days{localDay(year, month, day).time_since_epoch()} + std::chrono::hours{hour}
                   + std::chrono::minutes{minute} + std::chrono::seconds{second}};
}

/// The calendar of a zone of the system's database; throws if there is none.
inline Calendar zone(std::string_view name)
{
    return Calendar::named(name).value();
}

} // namespace tallyfox::test
