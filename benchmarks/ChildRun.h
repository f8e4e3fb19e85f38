#pragma once

#include <string>
#include <vector>

namespace tallyfox::bench {

/// What one run of a program took.
struct ChildRun {
    double wallMilliseconds = 0;
    double cpuMilliseconds = 0; ///< user and system
    double peakMebibytes = 0; ///< largest resident set
};

/// Runs a program, found in PATH, to its end, and discards its standard output. Ends this program if it cannot be run
/// or fails: the figures of a failure would mean nothing.
ChildRun runChild(const std::vector<std::string>& command);

/// Runs a program like `runChild` and returns its standard output.
std::string outputOf(const std::vector<std::string>& command);

} // namespace tallyfox::bench
