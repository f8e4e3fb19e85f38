#pragma once

#include <chrono>
#include <string>
#include <sys/types.h>

namespace tallyfox::test {

/// What is left of the session and process group with this number, one line for each process; empty when nothing is.
/// A zombie counts when it is a child of this process; any other belongs to whoever has to reap it.
std::string remainsOf(pid_t group);

/// What is left of a group when it must be gone: looks until nothing is left, 2 seconds at most (more where a
/// sanitizer slows everything down).
std::string remainsInTheEnd(pid_t group);

/// Number of children of this process, zombies included.
int childCount();

/// Number of open file descriptors of this process.
int openDescriptorCount();

} // namespace tallyfox::test
