#pragma once

#include <string>
#include <vector>

namespace tallyfox::bench {

/// The cost of one run of a program.
struct ChildRun {
    double wallMilliseconds = 0;
    double cpuMilliseconds = 0; ///< user and system
    double peakMebibytes = 0; ///< largest resident set
};

/// Runs a program, found along PATH, to its end; discarding its standard output. Ends this program when it cannot
/// be run or fails: a figure of a failure would mean nothing.
ChildRun runChild(const std::vector<std::string>& command);

/// What a program prints on standard output. Ends this program as `runChild` does.
std::string outputOf(const std::vector<std::string>& command);

} // namespace tallyfox::bench
