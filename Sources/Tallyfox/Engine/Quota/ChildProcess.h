#pragma once

#include "TallyfoxCore/Files/FileDescriptor.h"

#include <filesystem>
#include <string>
#include <sys/types.h>
#include <system_error>
#include <variant>

namespace tallyfox {

/// Both ends are closed in programs that are started meanwhile, and are never one of the standard descriptors, even
/// when the program runs without those.
struct Pipe {
    FileDescriptor reader;
    FileDescriptor writer;

    static std::variant<Pipe, std::error_code> open();
};

/// Starts `executable` with one argument in a session and process group of its own, with no signal blocked or ignored.
/// Standard error goes to the null device; environment and working folder are inherited. The error is the system's,
/// also for a file that turns out not to be executable.
std::variant<pid_t, std::error_code> spawnChild(const std::filesystem::path& executable, const std::string& argument,
                                                const FileDescriptor& standardInput,
                                                const FileDescriptor& standardOutput);

} // namespace tallyfox
