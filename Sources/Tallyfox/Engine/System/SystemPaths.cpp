#include "Tallyfox/Engine/System/SystemPaths.h"

#include <array>
#include <cstdlib>
#include <optional>
#include <pwd.h>
#include <unistd.h>

namespace tallyfox {

namespace {

std::optional<std::filesystem::path> absolutePath(const char* text)
{
    if (!text || text[0] != '/')
        return std::nullopt;
    return std::filesystem::path{text};
}

std::optional<std::filesystem::path> homeInAccountDatabase()
{
    constexpr std::size_t roomForOneEntry = 65'536; // network databases have entries of several KiB
    std::array<char, roomForOneEntry> room{};
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, room.data(), room.size(), &found) != 0 || !found)
        return std::nullopt;
    return absolutePath(found->pw_dir);
}

} // namespace

std::filesystem::path accountHome()
{
    if (const auto home = absolutePath(std::getenv("HOME")))
        return *home;
    return homeInAccountDatabase().value_or("/");
}

std::filesystem::path configurationFolder()
{
    const auto configured = absolutePath(std::getenv("XDG_CONFIG_HOME"));
    return configured ? *configured : accountHome() / ".config";
}

std::filesystem::path programFolder(std::error_code& error)
{
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

std::filesystem::path commandPath()
{
    std::error_code error;
    const std::filesystem::path folder = programFolder(error);
    std::filesystem::path built = folder / "tallyfox";
    if (std::filesystem::is_regular_file(built, error))
        return built;
    return (folder / "../../bin/tallyfox").lexically_normal();
}

} // namespace tallyfox
