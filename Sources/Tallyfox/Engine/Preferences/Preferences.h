#pragma once

#include <cstdint>

namespace tallyfox {

/// What the user can choose in the settings; each value is the one in force as long as the user has chosen none.
struct Preferences {
    std::int64_t refreshMinutes = 5;
    bool launchAtLogin = false;
    bool showDockIcon = false;
    bool showAccountEmails = false; ///< stored only
    bool rankingPrivate = true; ///< stored only
    bool notificationsEnabled = false; ///< stored only: nothing is ever notified
    double claudeThreshold = 20; ///< percent of remaining usage, 5 to 95; stored only
    double codexThreshold = 20; ///< percent of remaining usage, 5 to 95; stored only
    bool newsNotifications = false; ///< stored only

    friend bool operator==(const Preferences&, const Preferences&) = default;
};

inline constexpr int smallestThreshold = 5; ///< percent
inline constexpr int largestThreshold = 95; ///< percent
inline constexpr int thresholdStep = 5; ///< percent

} // namespace tallyfox
