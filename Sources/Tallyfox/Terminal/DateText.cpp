#include "Tallyfox/Terminal/DateText.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace tallyfox::DateText {

using std::chrono::days;
using std::chrono::hh_mm_ss;
using std::chrono::hours;
using std::chrono::local_days;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::year_month_day;

namespace {

/// The number with leading zeros, at least `width` digits long.
std::string padded(std::int64_t number, std::size_t width)
{
    std::string text = std::to_string(number);
    return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

std::string monthName(std::chrono::month month)
{
    constexpr std::array<std::string_view, 12> names{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    return std::string{names.at(static_cast<unsigned>(month) - 1)};
}

std::string clock(Instant instant, const Calendar& calendar)
{
    const auto local = instant.time_since_epoch() + calendar.offsetAt(instant).offset;
    const hh_mm_ss time{floor<minutes>(local - floor<days>(local))};
    return padded(time.hours().count(), 2) + ':' + padded(time.minutes().count(), 2);
}

std::string dayAndMonth(year_month_day date)
{
    return std::to_string(static_cast<unsigned>(date.day())) + ' ' + monthName(date.month());
}

/// Expects at least one minute.
std::string distanceText(minutes distance)
{
    const auto wholeDays = floor<days>(distance);
    const auto wholeHours = floor<hours>(distance - wholeDays);
    const auto rest = distance - wholeDays - wholeHours;
    if (wholeDays >= days{1}) {
        const std::string text = std::to_string(wholeDays.count()) + " d";
        return wholeHours == hours{0} ? text : text + ' ' + std::to_string(wholeHours.count()) + " h";
    }
    std::string text = wholeHours == hours{0} ? std::string{} : std::to_string(wholeHours.count()) + " h";
    if (rest == minutes{0})
        return text;
    return text + (text.empty() ? "" : " ") + std::to_string(rest.count()) + " min";
}

} // namespace

std::string isoInstant(Instant instant)
{
    const auto day = floor<days>(instant);
    const hh_mm_ss time{floor<milliseconds>(instant - day)};
    return isoDay(local_days{day.time_since_epoch()}) + 'T' + padded(time.hours().count(), 2) + ':'
        + padded(time.minutes().count(), 2) + ':' + padded(time.seconds().count(), 2) + '.'
        + padded(time.subseconds().count(), 3) + 'Z';
}

std::string isoDay(local_days day)
{
    const year_month_day date{day};
    return padded(static_cast<int>(date.year()), 4) + '-' + padded(static_cast<unsigned>(date.month()), 2) + '-'
        + padded(static_cast<unsigned>(date.day()), 2);
}

std::string localDayAndTime(Instant instant, const Calendar& calendar)
{
    const year_month_day date{calendar.dayOf(instant)};
    return dayAndMonth(date) + ' ' + std::to_string(static_cast<int>(date.year())) + ", " + clock(instant, calendar);
}

std::string localMoment(Instant instant, Instant now, const Calendar& calendar)
{
    const year_month_day date{calendar.dayOf(instant)};
    const year_month_day today{calendar.dayOf(now)};
    if (date == today)
        return clock(instant, calendar);
    if (date.year() == today.year())
        return dayAndMonth(date) + ", " + clock(instant, calendar);
    return localDayAndTime(instant, calendar);
}

std::string relative(Instant instant, Instant now)
{
    const bool isPast = instant < now;
    const auto distance = floor<minutes>(isPast ? now - instant : instant - now);
    if (distance < minutes{1})
        return isPast ? "just now" : "in less than 1 min";
    return isPast ? distanceText(distance) + " ago" : "in " + distanceText(distance);
}

} // namespace tallyfox::DateText
