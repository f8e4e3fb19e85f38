#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tallyfox {

/// The user's preferences, one key per setting, in an INI file that only the user can read (mode 0600). Nothing is
/// written before something is set. Objects are cheap: any thread may make its own, several on one file at a time.
class UserDefaults {
public:
    /// "tallyfox/tallyfox.ini" in `$XDG_CONFIG_HOME`, or in ".config" of the account's home when that is not set to
    /// an absolute path.
    static std::filesystem::path standardPath();

    explicit UserDefaults(std::filesystem::path file);

    /// The token of the granted home folder, any bytes; nothing when none has been stored.
    [[nodiscard]] std::optional<std::string> homeFolderBookmark() const;
    /// Stores a token; whether that succeeded. When it did not, the one stored before stays.
    [[nodiscard]] bool setHomeFolderBookmark(std::string_view token);

    /// Minutes between refreshes, as stored; 5 when absent, 0 or no number.
    [[nodiscard]] std::int64_t refreshMinutes() const;

private:
    std::filesystem::path m_file;
};

} // namespace tallyfox
