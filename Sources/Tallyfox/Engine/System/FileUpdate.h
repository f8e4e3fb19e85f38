#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <variant>

namespace tallyfox::FileUpdate {

/// The largest file that is read, in bytes: what is larger is none of the small text files this is for.
inline constexpr std::size_t maximumSize = 1'048'576;

struct Absent { };
struct Unreadable { }; ///< no permission, no regular file, too large, or an error of the disk

/// The whole content of a file.
std::variant<std::string, Absent, Unreadable> read(const std::filesystem::path& file);

/// What is to become of a file.
struct Replacement {
    std::string content;
    bool keepsBackup = false; ///< whether the content before is to stay beside it, under `backupPath(file)`
};

/// Makes the new content out of the one before (empty for a file that does not exist yet), or nothing to leave it.
using Change = std::function<std::optional<Replacement>(const std::string& before)>;

std::filesystem::path backupPath(const std::filesystem::path& file);

/// Reads, changes and replaces a file as one step: it is exchanged whole or left untouched, whatever happens meanwhile,
/// and two processes that change it at the same time do so one after the other. The file and missing folders are made
/// for the user alone (0600, 0700). A link stays a link, to the changed file. Waits half a second at most for another
/// process; whether the file is now as wanted, on the disk. An unreadable file is not replaced.
bool apply(const std::filesystem::path& file, const Change& change);

} // namespace tallyfox::FileUpdate
