#include "TallyfoxCore/Usage/ProgrammingErrors.h"

#include <cstdio>
#include <cstdlib>

namespace tallyfox {

void stopBecausePercentIsNoInteger()
{
    std::fputs("tallyfox: stopped: the quota percentage is no number that 64 bits hold\n", stderr);
    std::_Exit(EXIT_FAILURE);
}

void stopBecauseRefreshIntervalOverflows()
{
    std::fputs("tallyfox: stopped: the refresh interval has more seconds than 64 bits hold\n", stderr);
    std::_Exit(EXIT_FAILURE);
}

void stopBecauseDailySeriesDiffer()
{
    std::fputs("tallyfox: stopped: the daily series of the providers differ in length\n", stderr);
    std::_Exit(EXIT_FAILURE);
}

} // namespace tallyfox
