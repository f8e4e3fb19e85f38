#pragma once

namespace tallyfox {

/// What the program tells whoever started it.
enum class ExitStatus : int {
    done = 0,
    failure = 1,
    wrongUsage = 2,
    noHomeFolder = 3, ///< a summary was printed, but no home folder has been granted
};

} // namespace tallyfox
