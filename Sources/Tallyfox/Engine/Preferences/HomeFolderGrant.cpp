#include "Tallyfox/Engine/Preferences/HomeFolderGrant.h"

#include "Tallyfox/Engine/Preferences/GrantToken.h"
#include "TallyfoxCore/Files/FileDescriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>

namespace tallyfox::HomeFolderGrant {

namespace {

std::error_code lastError()
{
    return {errno, std::system_category()};
}

/// Opens first and asks the open folder, so that what is looked at cannot be exchanged in between. Opening a mere
/// path handle needs no permission to read the folder: a folder nobody may list can be granted all the same.
std::variant<FolderIdentity, std::error_code> identityOf(const std::filesystem::path& folder)
{
    const FileDescriptor handle{open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)};
    struct statx status { };
    if (!handle.isOpen() || statx(handle.get(), "", AT_EMPTY_PATH, STATX_INO | STATX_BTIME, &status) != 0)
        return lastError();
    FolderIdentity identity{.inode = status.stx_ino};
    if ((status.stx_mask & STATX_BTIME) != 0) {
        identity.birthSeconds = status.stx_btime.tv_sec;
        identity.birthNanoseconds = status.stx_btime.tv_nsec;
    }
    return identity;
}

} // namespace

std::variant<std::string, std::error_code> token(const std::filesystem::path& folder)
{
    std::error_code error;
    const std::filesystem::path canonical = std::filesystem::canonical(folder, error);
    if (error)
        return error;
    const auto identity = identityOf(canonical);
    if (const auto* failure = std::get_if<std::error_code>(&identity))
        return *failure;
    return GrantToken{.path = canonical.native(), .identity = std::get<FolderIdentity>(identity)}.encoded();
}

Resolution resolve(std::string_view token)
{
    const auto content = GrantToken::decoded(token);
    if (!content)
        return Absent{};
    const auto identity = identityOf(content->path);
    if (!std::holds_alternative<FolderIdentity>(identity))
        return Absent{};
    if (std::get<FolderIdentity>(identity) != content->identity)
        return Stale{};
    return Location{content->path};
}

} // namespace tallyfox::HomeFolderGrant
