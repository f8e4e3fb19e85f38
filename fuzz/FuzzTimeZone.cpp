/// The bytes of a zone file, or the text of a rule: whatever they are, the days of their calendar follow each other
/// without a gap.

#include "FuzzSupport.h"
#include "TallyfoxCore/Time/Calendar.h"
#include "TallyfoxCore/Time/TimeZoneFile.h"
#include "TallyfoxCore/Time/TimeZoneRule.h"

#include <array>

using namespace tallyfox;
using std::chrono::days;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

namespace {

constexpr std::array years{-1, 1, 1900, 1970, 2025, 2037, 2038, 2400, 9999, 10'001};

template <typename Zone> void checkStretches(const Zone& zone)
{
    for (const int year : years) {
        sys_seconds time = sys_days{std::chrono::year{year} / 1 / 1};
        for (int step = 0; step < 4 && time < ZoneOffset::latest; ++step) {
            const ZoneOffset stretch = zone.offsetAt(time);
            require(stretch.begin <= time && time < stretch.end, "a stretch holds the moment it was asked for");
            require(abs(stretch.offset) <= ZoneOffset::largest, "no zone is further from UTC than the bound");
            require(zone.offsetAt(stretch.end - seconds{1}) == stretch, "a stretch lasts until its end");
            time = stretch.end;
        }
    }
}

template <typename Zone> void checkDays(const Zone& zone)
{
    const Calendar calendar{"fuzzed", [&](sys_seconds time) { return zone.offsetAt(time); }};
    for (const int year : {1, 1970, 2025, 9999}) {
        const std::chrono::local_days day{std::chrono::year{year} / 6 / 15};
        const auto start = calendar.startOfDay(day);
        if (!start)
            continue; // a zone may skip a day
        require(calendar.dayOf(*start) == day, "a day begins in itself");
        require(calendar.dayOf(*start - std::chrono::microseconds{1}) != day, "a day has no earlier moment nearby");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = textOf(data, size);
    if (const auto zone = TimeZoneFile::decode(text)) {
        checkStretches(*zone);
        checkDays(*zone);
    }
    if (const auto rule = TimeZoneRule::parse(text)) {
        checkStretches(*rule);
        checkDays(*rule);
    }
    return 0;
}
