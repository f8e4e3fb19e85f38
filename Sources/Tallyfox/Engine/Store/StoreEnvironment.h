#pragma once

#include "Tallyfox/Engine/Quota/CodexQuotaFetcher.h"
#include "TallyfoxCore/Time/Calendar.h"
#include "TallyfoxCore/Usage/QuotaSnapshot.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <variant>

namespace tallyfox {

/// Lets the user choose one folder.
class HomeFolderPicker {
public:
    struct Request {
        std::filesystem::path startFolder; ///< what the dialog shows first
        std::string message; ///< why the program asks, UTF-8
    };
    /// Called once, on the main thread: the chosen folder, or nothing when the user cancelled.
    using Completion = std::function<void(std::optional<std::filesystem::path>)>;

    HomeFolderPicker() = default;
    HomeFolderPicker(const HomeFolderPicker&) = delete;
    HomeFolderPicker& operator=(const HomeFolderPicker&) = delete;
    virtual ~HomeFolderPicker() = default;

    /// Shows the dialog and returns at once.
    virtual void begin(const Request& request, Completion completion) = 0;
};

/// The outside world as the store sees it. Functions marked "any thread" are called from several load threads at a time
/// and may outlive the store, in a load that cannot be interrupted: they must own what they use. The others are called
/// on the main thread.
struct StoreEnvironment {
    std::function<Instant()> now; ///< any thread
    std::function<Calendar()> calendar; ///< the user's current calendar
    /// The granted home folder, resolved at each call; nothing without a valid grant. Any thread.
    std::function<std::optional<std::filesystem::path>()> authorizedHomeURL;
    /// Fetches the Codex quota, blocking for at most 10 seconds; returns early on a stop request. May be empty: then no
    /// fetch is attempted, which does not count as a failure. Any thread.
    std::function<std::variant<QuotaSnapshot, QuotaError>(std::stop_token)> fetchQuota;
    /// Ends every child process that fetches have started, and prevents fetches from starting another. Called when the
    /// store is destroyed; may be empty.
    std::function<void()> endFetches;
    /// Stores a grant for a folder the user has chosen; returns whether that succeeded.
    std::function<bool(const std::filesystem::path&)> grantHome;
    /// The folder that the picker shows first.
    std::function<std::filesystem::path()> accountHome;
    std::chrono::milliseconds minute = std::chrono::minutes{1}; ///< of the refresh interval; shorter in tests
    HomeFolderPicker* picker = nullptr; ///< null where there is no display: requests are then ignored
};

/// The user's current calendar: the zone that `TZ` names; without `TZ`, the zone the system is set to; UTC where that
/// is unknown or its data is unusable, as in every other program. Reads everything at each call (a fraction of a
/// millisecond), so that a changed setting takes effect at once. Any thread.
Calendar systemCalendar();

/// The environment on the real machine: system clock and zone, and the grant stored in the preferences file
/// `userDefaults`. `home` replaces the grant without being stored. Without quota and picker.
StoreEnvironment makeStoreEnvironment(const std::filesystem::path& userDefaults,
                                      const std::optional<std::filesystem::path>& home);

/// Adds the quota that the user's own `codex` reports. Call once: the environment then owns all child processes.
void addCodexQuota(StoreEnvironment& environment);

} // namespace tallyfox
