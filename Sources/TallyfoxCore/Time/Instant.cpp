#include "TallyfoxCore/Time/Instant.h"

#include <cmath>

namespace tallyfox {

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

} // namespace tallyfox
