#include "TallyfoxCore/Usage/TokenSum.h"

#include <cstdio>
#include <cstdlib>

namespace tallyfox {

void stopProgram(const char* why)
{
    std::fprintf(stderr, "tallyfox: stopped: %s\n", why);
    std::_Exit(EXIT_FAILURE);
}

} // namespace tallyfox
