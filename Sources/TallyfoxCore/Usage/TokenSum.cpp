#include "TallyfoxCore/Usage/TokenSum.h"

#include <cstdio>
#include <cstdlib>

namespace tallyfox {

void stopBecauseTokenSumOverflows()
{
    std::fputs("tallyfox: stopped: the token counts of the history add up to more than 64 bits hold\n", stderr);
    std::_Exit(EXIT_FAILURE);
}

} // namespace tallyfox
