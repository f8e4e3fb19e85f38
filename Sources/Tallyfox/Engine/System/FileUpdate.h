#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <variant>

namespace tallyfox::FileUpdate {

/// The largest file that is read, in bytes: this is for small text files.
inline constexpr std::size_t maximumSize = 1'048'576;

struct Absent { };
struct Unreadable { }; ///< no permission, not a regular file, too large, or a disk error

/// The whole content of a file.
std::variant<std::string, Absent, Unreadable> read(const std::filesystem::path& file);

/// The new content of a file.
struct Replacement {
    std::string content;
    bool keepsBackup = false; ///< whether to keep the old content as `backupPath(file)`
};

/// Makes the new content from the old one (empty for a file that does not exist), or nothing to leave the file as it
/// is.
using Change = std::function<std::optional<Replacement>(const std::string& before)>;

std::filesystem::path backupPath(const std::filesystem::path& file);

/// Reads, changes and replaces a file atomically: whatever happens, the file is either replaced as a whole or
/// unchanged, and processes that change it at the same time take turns. Waits at most half a second for another
/// process. Creates the file and missing folders for the user alone (0600, 0700). A symbolic link is kept; its target
/// is changed. Does not replace an unreadable file. Returns whether the file has the wanted content on the disk.
bool apply(const std::filesystem::path& file, const Change& change);

} // namespace tallyfox::FileUpdate
