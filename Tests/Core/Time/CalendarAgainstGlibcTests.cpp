#include "Support/GlibcTimeZone.h"
#include "Support/Moments.h"
#include "TallyfoxCore/Time/Calendar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <string>

namespace tallyfox::test {
namespace {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_seconds;

/// The C library computes the same days independently, from the same zones.
class CalendarAgainstGlibc : public testing::TestWithParam<const char*> { };

TEST_P(CalendarAgainstGlibc, everyDayOf2020To2030IsTheSame)
{
    const Calendar calendar = zone(GetParam());
    const GlibcTimeZone glibc{GetParam()};
    const auto first = floor<seconds>(utcTime(2020, 1, 1));
    const auto last = floor<seconds>(utcTime(2031, 1, 1));
    constexpr minutes step{30};

    std::map<local_days, sys_seconds> firstSeen; // at the precision of the steps
    for (sys_seconds time = first; time < last; time += step) {
        const local_days day = glibc.dayOf(time);
        ASSERT_EQ(calendar.dayOf(time), day) << time.time_since_epoch().count();
        firstSeen.try_emplace(day, time);
    }
    ASSERT_GE(firstSeen.size(), 4018U);
    firstSeen.erase(firstSeen.begin());
    for (const auto& [day, seen] : firstSeen) {
        const auto start = calendar.startOfDay(day);
        ASSERT_TRUE(start) << day.time_since_epoch().count();
        ASSERT_LE(*start, seen);
        ASSERT_GT(*start, seen - step);
        ASSERT_EQ(glibc.dayOf(floor<seconds>(*start)), day);
        ASSERT_LT(glibc.dayOf(floor<seconds>(*start) - seconds{1}), day);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Zones, CalendarAgainstGlibc,
    testing::Values("UTC", "Europe/Berlin", "Europe/London", "Europe/Dublin", "Europe/Lisbon", "Europe/Istanbul",
                    "Europe/Volgograd", "Africa/Cairo", "Africa/Casablanca", "Africa/El_Aaiun", "Africa/Juba",
                    "America/Santiago", "America/Punta_Arenas", "America/Asuncion", "America/Havana",
                    "America/New_York", "America/Nuuk", "America/Scoresbysund", "America/St_Johns",
                    "America/Mexico_City", "America/Sao_Paulo", "America/Whitehorse", "America/Phoenix", "America/Adak",
                    "Asia/Almaty", "Asia/Amman", "Asia/Beirut", "Asia/Damascus", "Asia/Gaza", "Asia/Jerusalem",
                    "Asia/Kathmandu", "Asia/Kolkata", "Asia/Tehran", "Asia/Tokyo", "Antarctica/Casey",
                    "Antarctica/Troll", "Antarctica/Vostok", "Atlantic/Azores", "Australia/Eucla",
                    "Australia/Lord_Howe", "Australia/Sydney", "Pacific/Apia", "Pacific/Auckland", "Pacific/Chatham",
                    "Pacific/Easter", "Pacific/Fiji", "Pacific/Kiritimati", "Pacific/Marquesas", "Pacific/Norfolk",
                    "Pacific/Pago_Pago", "Etc/GMT+12"),
    [](const auto& zone) {
        std::string name = zone.param;
        std::replace_if(
            name.begin(), name.end(), [](unsigned char character) { return std::isalnum(character) == 0; }, '_');
        return name;
    });

} // namespace
} // namespace tallyfox::test
