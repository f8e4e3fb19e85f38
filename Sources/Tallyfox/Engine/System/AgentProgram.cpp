#include "Tallyfox/Engine/System/AgentProgram.h"

#include <cerrno>
#include <filesystem>
#include <unistd.h>

namespace tallyfox::AgentProgram {

namespace {

std::filesystem::path folderOfThisProgram(std::error_code& error)
{
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

} // namespace

std::error_code replaceThisProcess(char** argv)
{
    std::error_code error;
    const std::filesystem::path folder = folderOfThisProgram(error);
    if (error)
        return error;
    // Beside this program where it was built, and where an installation puts what is no command of its own.
    for (const auto* place : {"tallyfox-agent", "../libexec/tallyfox/tallyfox-agent"}) {
        ::execv((folder / place).c_str(), argv);
        error = {errno, std::generic_category()};
        if (error != std::errc::no_such_file_or_directory)
            break;
    }
    return error;
}

std::filesystem::path command()
{
    std::error_code error;
    const std::filesystem::path folder = folderOfThisProgram(error);
    std::filesystem::path built = folder / "tallyfox";
    if (std::filesystem::is_regular_file(built, error))
        return built;
    return (folder / "../../bin/tallyfox").lexically_normal();
}

} // namespace tallyfox::AgentProgram
