#pragma once

#include "Tallyfox/Engine/Preferences/Preferences.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tallyfox {

/// The user's preferences, one key per setting, in an INI file that only the user can read (mode 0600). Nothing is
/// written before something is set. Objects are cheap, and read the file at each call: any thread may make its own,
/// several threads and processes may read and set on one file at a time.
///
/// A key that is absent or holds no value of its kind reads as the value in `Preferences`. A set says whether it
/// succeeded: if it did, the value is on the disk, and if not, the file is what it was. Setting a key of a damaged file
/// mends the file, and keeps what it was beside it, under the name with ".backup".
class UserDefaults {
public:
    /// "tallyfox/tallyfox.ini" in `$XDG_CONFIG_HOME`, or in ".config" of the account's home when that is not set to
    /// an absolute path.
    static std::filesystem::path standardPath();

    explicit UserDefaults(std::filesystem::path file);

    /// All values but the bookmark.
    [[nodiscard]] Preferences preferences() const;

    /// The token of the granted home folder, any bytes; nothing when none has been stored.
    [[nodiscard]] std::optional<std::string> homeFolderBookmark() const;
    [[nodiscard]] bool setHomeFolderBookmark(std::string_view token);

    /// Minutes between refreshes, as stored, so that their seconds fit 64 bits; 0 counts as absent.
    [[nodiscard]] std::int64_t refreshMinutes() const;
    [[nodiscard]] bool setRefreshMinutes(std::int64_t minutes);

    [[nodiscard]] bool launchAtLogin() const;
    [[nodiscard]] bool setLaunchAtLogin(bool value);

    [[nodiscard]] bool showDockIcon() const;
    [[nodiscard]] bool setShowDockIcon(bool value);

    [[nodiscard]] bool showAccountEmails() const;
    [[nodiscard]] bool setShowAccountEmails(bool value);

    [[nodiscard]] bool rankingPrivate() const;
    [[nodiscard]] bool setRankingPrivate(bool value);

    [[nodiscard]] bool notificationsEnabled() const;
    [[nodiscard]] bool setNotificationsEnabled(bool value);

    /// Percent, from `smallestThreshold` to `largestThreshold`.
    [[nodiscard]] double claudeThreshold() const;
    [[nodiscard]] bool setClaudeThreshold(double percent);

    [[nodiscard]] double codexThreshold() const;
    [[nodiscard]] bool setCodexThreshold(double percent);

    [[nodiscard]] bool newsNotifications() const;
    [[nodiscard]] bool setNewsNotifications(bool value);

private:
    std::filesystem::path m_file;
};

} // namespace tallyfox
