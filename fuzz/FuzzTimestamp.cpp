/// One timestamp, read by our parser and by the date library. The library reads more than we do (missing digits,
/// spaces, second 60, offsets of 99 hours), so only texts of the right shape are compared.

#include "FuzzSupport.h"
#include "TallyfoxCore/Time/Instant.h"

#include <date/date.h>

#include <algorithm>
#include <sstream>
#include <string>

using namespace tallyfox;

namespace {

/// Whether the text has digits where `shape` has 0, and equals it elsewhere.
bool hasShape(std::string_view text, std::string_view shape)
{
    return text.size() == shape.size()
        && std::equal(text.begin(), text.end(), shape.begin(), [](char character, char wanted) {
               return wanted == '0' ? character >= '0' && character <= '9' : character == wanted;
           });
}

struct Parts {
    std::string dateAndTime; ///< "2025-03-04 05:06:07"
    std::string fraction; ///< digits of microseconds, six of them
    std::string offset; ///< "+0530"
};

constexpr std::size_t secondsEnd = 19;

/// The designator in the form that the library accepts; nothing if it is not one.
std::optional<std::string> offsetOf(std::string designator, bool hasFraction)
{
    if (designator == "Z" || (designator.empty() && hasFraction))
        return "+0000";
    if (designator.size() == 6 && designator[3] == ':')
        designator.erase(3, 1);
    if (!hasShape(designator, "+0000") && !hasShape(designator, "-0000"))
        return std::nullopt;
    const bool isTimeOfDay = designator.substr(1, 2) <= "23" && designator.substr(3, 2) <= "59";
    return isTimeOfDay ? std::optional{designator} : std::nullopt;
}

std::optional<Parts> partsOf(std::string_view text)
{
    if (text.size() < secondsEnd || !hasShape(text.substr(0, secondsEnd), "0000-00-00T00:00:00"))
        return std::nullopt;
    std::string_view rest = text.substr(secondsEnd);
    std::string fraction;
    const bool hasFraction = rest.starts_with('.');
    if (hasFraction) {
        const std::size_t digits = std::min(rest.find_first_not_of("0123456789", 1), rest.size()) - 1;
        if (digits == 0)
            return std::nullopt;
        fraction = rest.substr(1, digits);
        rest.remove_prefix(digits + 1);
    }
    const auto offset = offsetOf(std::string{rest}, hasFraction);
    if (!offset || text.substr(17, 2) == "60")
        return std::nullopt;
    fraction.resize(6, '0');
    std::string dateAndTime{text.substr(0, secondsEnd)};
    dateAndTime[10] = ' ';
    return Parts{dateAndTime, fraction, *offset};
}

std::optional<Instant> byTheLibrary(const Parts& parts)
{
    std::istringstream stream{parts.dateAndTime + ' ' + parts.offset};
    date::sys_seconds seconds;
    stream >> date::parse("%Y-%m-%d %H:%M:%S %z", seconds);
    if (stream.fail() || parts.dateAndTime.starts_with("0000"))
        return std::nullopt;
    const Instant instant = seconds + std::chrono::microseconds{std::stol(parts.fraction)};
    return instant < distantPast || instant > distantFuture ? std::nullopt : std::optional{instant};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = textOf(data, size);
    const auto parts = partsOf(text);
    const auto expected = parts ? byTheLibrary(*parts) : std::nullopt;
    require(parseISO8601(text) == expected, "a timestamp names what the date library says, or nothing");
    return 0;
}
