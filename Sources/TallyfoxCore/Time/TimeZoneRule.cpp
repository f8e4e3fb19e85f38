#include "TallyfoxCore/Time/TimeZoneRule.h"

#include <algorithm>
#include <vector>

namespace tallyfox {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::local_days;
using std::chrono::local_seconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;
using std::chrono::year;
using std::chrono::year_month_day;

namespace {

constexpr unsigned lastWeek = 5;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool isLetter(char character)
{
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

} // namespace

/// Parses a rule from left to right; every function takes its item off the front, or returns that it is missing.
class TimeZoneRuleReader {
public:
    explicit TimeZoneRuleReader(std::string_view text)
        : m_rest(text)
    { }

    std::optional<TimeZoneRule> rule()
    {
        TimeZoneRule rule;
        const auto standard = name() ? offset() : std::nullopt;
        if (!standard)
            return std::nullopt;
        rule.m_standard = *standard;
        if (!m_rest.empty()) {
            rule.m_summer = summerTime(*standard);
            if (!rule.m_summer)
                return std::nullopt;
        }
        return rule;
    }

private:
    using Change = TimeZoneRule::Change;

    bool take(char wanted)
    {
        if (!m_rest.starts_with(wanted))
            return false;
        m_rest.remove_prefix(1);
        return true;
    }

    /// At least three letters, or three letters, digits and signs between angle brackets.
    bool name()
    {
        const bool quoted = take('<');
        std::size_t length = 0;
        while (length < m_rest.size() && (isLetter(m_rest[length]) || (quoted && isQuotedOnly(m_rest[length]))))
            ++length;
        m_rest.remove_prefix(length);
        return length >= 3 && (!quoted || take('>'));
    }

    static bool isQuotedOnly(char character)
    {
        return isDigit(character) || character == '+' || character == '-';
    }

    std::optional<unsigned> number(unsigned least, unsigned most)
    {
        unsigned value = 0;
        std::size_t length = 0;
        for (; length < m_rest.size() && isDigit(m_rest[length]) && value <= most; ++length)
            value = value * 10 + static_cast<unsigned>(m_rest[length] - '0');
        if (length == 0 || value < least || value > most)
            return std::nullopt;
        m_rest.remove_prefix(length);
        return value;
    }

    /// [+-]hh[:mm[:ss]]
    std::optional<seconds> time(unsigned mostHours)
    {
        const bool negative = take('-');
        if (!negative)
            take('+');
        const auto hour = number(0, mostHours);
        const auto minute = hour && take(':') ? number(0, 59) : std::optional{0U};
        const bool hasSeconds = hour && minute && m_rest.starts_with(':');
        const auto second = hasSeconds && take(':') ? number(0, 59) : std::optional{0U};
        if (!hour || !minute || !second)
            return std::nullopt;
        const seconds sum = hours{*hour} + minutes{*minute} + seconds{*second};
        return negative ? -sum : sum;
    }

    /// The text counts west of Greenwich as positive, the program counts east.
    std::optional<seconds> offset()
    {
        const auto west = time(24);
        return west ? std::optional{-*west} : std::nullopt;
    }

    std::optional<TimeZoneRule::SummerTime> summerTime(seconds standard)
    {
        if (!name())
            return std::nullopt;
        TimeZoneRule::SummerTime summer;
        summer.offset = standard + hours{1};
        if (!m_rest.empty() && m_rest.front() != ',') {
            const auto given = offset();
            if (!given)
                return std::nullopt;
            summer.offset = *given;
        }
        if (m_rest.empty())
            m_rest = ",M3.2.0,M11.1.0";
        const auto begin = take(',') ? change() : std::nullopt;
        const auto end = begin && take(',') ? change() : std::nullopt;
        if (!end || !m_rest.empty())
            return std::nullopt;
        summer.begin = *begin;
        summer.end = *end;
        return summer;
    }

    std::optional<Change> change()
    {
        auto change = day();
        if (!change || !take('/'))
            return change;
        const auto given = time(167);
        if (!given)
            return std::nullopt;
        change->time = *given;
        return change;
    }

    std::optional<Change> day()
    {
        if (take('M'))
            return monthWeekday();
        const bool withoutLeapDay = take('J');
        const auto day = withoutLeapDay ? number(1, 365) : number(0, 365);
        if (!day)
            return std::nullopt;
        return Change{.kind = withoutLeapDay ? Change::Kind::dayWithoutLeapDay : Change::Kind::dayOfYear, .day = *day};
    }

    std::optional<Change> monthWeekday()
    {
        const auto month = number(1, 12);
        const auto week = month && take('.') ? number(1, lastWeek) : std::nullopt;
        const auto weekday = week && take('.') ? number(0, 6) : std::nullopt;
        if (!weekday)
            return std::nullopt;
        return Change{.month = *month, .week = *week, .day = *weekday};
    }

    std::string_view m_rest;
};

local_seconds TimeZoneRule::Change::in(year year) const
{
    const local_days newYear{year / std::chrono::January / 1};
    switch (kind) {
    case Kind::monthWeekday: {
        const std::chrono::month ofYear{month};
        const std::chrono::weekday weekday{day};
        if (week == lastWeek)
            return local_days{year / ofYear / weekday[std::chrono::last]} + time;
        return local_days{year / ofYear / weekday[week]} + time;
    }
    case Kind::dayWithoutLeapDay: {
        constexpr unsigned lastOfFebruary = 59;
        const bool skipsLeapDay = year.is_leap() && day > lastOfFebruary;
        return newYear + days{day - 1} + days{skipsLeapDay ? 1 : 0} + time;
    }
    case Kind::dayOfYear:
        break;
    }
    return newYear + days{day} + time;
}

std::optional<TimeZoneRule> TimeZoneRule::parse(std::string_view text)
{
    return TimeZoneRuleReader{text}.rule();
}

ZoneOffset TimeZoneRule::offsetAt(sys_seconds time) const
{
    if (!m_summer)
        return ZoneOffset::always(m_standard);

    // A change may fall up to a week outside its year: two years on each side always hold the change before and the
    // change after.
    constexpr int yearsAround = 2;
    std::vector<ZoneOffset> stretches;
    const year middle = year_month_day{floor<days>(time)}.year();
    for (int away = -yearsAround; away <= yearsAround; ++away) {
        const year year = middle + std::chrono::years{away};
        const sys_seconds begin{(m_summer->begin.in(year)-m_standard).time_since_epoch()};
        const sys_seconds end{(m_summer->end.in(year)-m_summer->offset).time_since_epoch()};
        // End of one summer before the start of the next: where they coincide, summer never ends.
        stretches.push_back({end, {}, m_standard});
        stretches.push_back({begin, {}, m_summer->offset});
    }
    std::stable_sort(stretches.begin(), stretches.end(),
                     [](const ZoneOffset& a, const ZoneOffset& b) { return a.begin < b.begin; });
    const auto next = std::upper_bound(stretches.begin(), stretches.end(), time,
                                       [](sys_seconds at, const ZoneOffset& stretch) { return at < stretch.begin; });
    ZoneOffset found = *std::prev(next);
    found.end = next->begin;
    return found.within(ZoneOffset::earliest, ZoneOffset::latest);
}

} // namespace tallyfox
