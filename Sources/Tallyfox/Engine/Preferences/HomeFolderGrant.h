#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>

namespace tallyfox {

/// The user's grant of one folder, kept as an opaque token: the folder's canonical path and its identity (inode and
/// birth time, which survive a reboot; the device number does not).
namespace HomeFolderGrant {

struct Location {
    std::filesystem::path path;
};
struct Absent { }; ///< the folder is gone, is no folder any more, or the token is damaged
struct Stale { }; ///< another folder stands at the path now

using Resolution = std::variant<Location, Absent, Stale>;

/// A token for `folder`, or the system's error when it cannot be resolved or is no folder.
std::variant<std::string, std::error_code> token(const std::filesystem::path& folder);

/// What a token stands for now. Any bytes are accepted; a damaged token is `Absent`.
Resolution resolve(std::string_view token);

} // namespace HomeFolderGrant

} // namespace tallyfox
