#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tallyfox {

/// What the user can choose in the settings. Each initial value applies until the user chooses another.
struct Preferences {
    std::int64_t refreshMinutes = 5;
    bool launchAtLogin = false;
    bool showDockIcon = false;
    bool showAccountEmails = false; ///< stored only
    bool rankingPrivate = true; ///< stored only
    bool notificationsEnabled = false; ///< stored only: no notification is ever sent
    double claudeThreshold = 20; ///< percent of remaining usage, 5 to 95; stored only
    double codexThreshold = 20; ///< percent of remaining usage, 5 to 95; stored only
    bool newsNotifications = false; ///< stored only
    bool requestsShortcut = false; ///< at each start, of a desktop that asked the user about it once

    friend bool operator==(const Preferences&, const Preferences&) = default;
};

using PreferenceFlag = bool Preferences::*;

inline constexpr int smallestThreshold = 5; ///< percent
inline constexpr int largestThreshold = 95; ///< percent
inline constexpr int thresholdStep = 5; ///< percent

/// The user's preferences, one key per member of `Preferences`, in an INI file that only the user can read (mode 0600).
/// Nothing is written before something is set. Objects are cheap and read the file at each call: any thread may make
/// its own, and several threads and processes may read and set on one file at a time.
///
/// A key that is absent or holds no value of its kind reads as the initial value in `Preferences`. Setting returns
/// whether it succeeded: if it did, the value is on the disk, and if not, the file is unchanged. Setting a key of a
/// damaged file repairs the file, and keeps the damaged content beside it, under the name with ".backup".
class UserDefaults {
public:
    /// "tallyfox/tallyfox.ini" in `$XDG_CONFIG_HOME`, or in ".config" of the account's home when that is not set to
    /// an absolute path.
    static std::filesystem::path standardPath();

    explicit UserDefaults(std::filesystem::path file);

    /// `refreshMinutes` is as stored, but never 0, and its seconds fit 64 bits.
    [[nodiscard]] Preferences preferences() const;

    [[nodiscard]] bool set(PreferenceFlag member, bool value);
    [[nodiscard]] bool set(std::int64_t Preferences::*member, std::int64_t value);
    [[nodiscard]] bool set(double Preferences::*member, double value);

    /// The token of the granted home folder, any bytes; nothing when none has been stored.
    [[nodiscard]] std::optional<std::string> homeFolderBookmark() const;
    [[nodiscard]] bool setHomeFolderBookmark(std::string_view token);

private:
    std::filesystem::path m_file;
};

} // namespace tallyfox
