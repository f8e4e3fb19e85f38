#pragma once

#include "TallyfoxCore/Files/FileDescriptor.h"

#include <filesystem>
#include <string>
#include <sys/types.h>
#include <system_error>
#include <variant>

namespace tallyfox {

/// A pipe whose ends are closed on exec, and are never one of the standard descriptors, even when the program was
/// started without those.
struct Pipe {
    FileDescriptor reader;
    FileDescriptor writer;

    static std::variant<Pipe, std::error_code> open();
};

/// Starts `executable` with one argument in its own session and process group, with no signal blocked or ignored.
/// Standard error is the null device; environment and working directory are inherited. Returns the process id or the
/// system's error, including that of a file that cannot be executed.
std::variant<pid_t, std::error_code> spawnChild(const std::filesystem::path& executable, const std::string& argument,
                                                const FileDescriptor& standardInput,
                                                const FileDescriptor& standardOutput);

} // namespace tallyfox
