#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace tallyfox {

/// The user's grant of one folder, stored as a token: the folder's canonical path and its identity (inode and birth
/// time; the device number would not survive a reboot).
namespace HomeFolderGrant {

struct Location {
    std::filesystem::path path;
};
struct Absent { }; ///< the folder no longer exists, or the token is damaged
struct Stale { }; ///< another folder has taken the path

using Resolution = std::variant<Location, Absent, Stale>;

/// A token for `folder`; nothing when it cannot be resolved or is not a folder.
std::optional<std::string> makeToken(const std::filesystem::path& folder);

/// What a token grants now. Accepts any bytes; a damaged token is `Absent` or `Stale`.
Resolution resolve(std::string_view token);

} // namespace HomeFolderGrant

} // namespace tallyfox
