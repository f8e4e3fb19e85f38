#pragma once

#include <chrono>
#include <string>
#include <sys/types.h>

namespace tallyfox::test {

/// The processes left in the session and process group with this number, one line each. A zombie counts only if it is a
/// child of this process; another process must reap any other.
std::string remainsOf(pid_t group);

/// What is left of a group that should have ended: waits until nothing is left, for 2 seconds at most (longer with a
/// sanitizer).
std::string remainsInTheEnd(pid_t group);

/// Number of children of this process, zombies included.
int childCount();

/// Number of open file descriptors of this process.
int openDescriptorCount();

} // namespace tallyfox::test
