#include "TallyfoxCore/Time/Instant.h"

#include <cmath>
#include <cstddef>

namespace tallyfox {

namespace {

using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::seconds;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// Parses a timestamp from the front. After the first mismatch `hasFailed` stays true.
class Scanner {
public:
    explicit Scanner(std::string_view text)
        : m_rest(text)
    { }

    [[nodiscard]] bool hasFailed() const
    {
        return m_hasFailed;
    }
    [[nodiscard]] bool atEnd() const
    {
        return m_rest.empty();
    }

    bool takeIf(char character)
    {
        const bool matches = m_rest.starts_with(character);
        if (matches)
            m_rest.remove_prefix(1);
        return matches;
    }

    void take(char character)
    {
        m_hasFailed |= !takeIf(character);
    }

    /// Exactly `count` digits with a value in [`lowest`, `highest`].
    int number(std::size_t count, int lowest, int highest)
    {
        int value = 0;
        for (std::size_t index = 0; index < count; ++index)
            value = value * 10 + digit();
        m_hasFailed |= value < lowest || value > highest;
        return value;
    }

    /// At least one digit, as a fraction of a second, truncated to microseconds.
    microseconds fraction()
    {
        microseconds value{0};
        std::int64_t unit = 100'000;
        m_hasFailed |= m_rest.empty() || !isDigit(m_rest.front());
        while (!m_rest.empty() && isDigit(m_rest.front())) {
            value += microseconds{digit() * unit};
            unit /= 10;
        }
        return value;
    }

private:
    int digit()
    {
        if (m_rest.empty() || !isDigit(m_rest.front())) {
            m_hasFailed = true;
            return 0;
        }
        const int value = m_rest.front() - '0';
        m_rest.remove_prefix(1);
        return value;
    }

    std::string_view m_rest;
    bool m_hasFailed = false;
};

/// The offset from UTC of the designator at the front; a missing one is an error unless `mayBeMissing`.
seconds zoneOffset(Scanner& scanner, bool mayBeMissing)
{
    if (scanner.takeIf('Z') || (mayBeMissing && scanner.atEnd()))
        return seconds{0};
    const bool isNegative = scanner.takeIf('-');
    if (!isNegative)
        scanner.take('+');
    const hours wholeHours{scanner.number(2, 0, 23)};
    scanner.takeIf(':');
    const seconds offset = wholeHours + minutes{scanner.number(2, 0, 59)};
    return isNegative ? -offset : offset;
}

} // namespace

Instant instantFromUnixSeconds(double seconds)
{
    constexpr double microsecondsPerSecond = 1e6;
    const double microseconds = std::round(seconds * microsecondsPerSecond);
    if (!(microseconds > static_cast<double>(distantPast.time_since_epoch().count())))
        return distantPast;
    if (microseconds >= static_cast<double>(distantFuture.time_since_epoch().count()))
        return distantFuture;
    return Instant{std::chrono::microseconds{static_cast<std::int64_t>(microseconds)}};
}

std::optional<Instant> parseISO8601(std::string_view text)
{
    Scanner scanner(text);
    const std::chrono::year year{scanner.number(4, 1, 9999)};
    scanner.take('-');
    const std::chrono::month month{static_cast<unsigned>(scanner.number(2, 1, 12))};
    scanner.take('-');
    const std::chrono::year_month_day date{year, month,
                                           std::chrono::day{static_cast<unsigned>(scanner.number(2, 1, 31))}};
    scanner.take('T');
    microseconds time = hours{scanner.number(2, 0, 23)};
    scanner.take(':');
    time += minutes{scanner.number(2, 0, 59)};
    scanner.take(':');
    time += seconds{scanner.number(2, 0, 59)};
    const bool hasFraction = scanner.takeIf('.');
    if (hasFraction)
        time += scanner.fraction();
    time -= zoneOffset(scanner, hasFraction);
    if (scanner.hasFailed() || !scanner.atEnd() || !date.ok())
        return std::nullopt;
    const Instant instant = std::chrono::sys_days{date} + time;
    if (instant < distantPast || instant > distantFuture)
        return std::nullopt;
    return instant;
}

} // namespace tallyfox
