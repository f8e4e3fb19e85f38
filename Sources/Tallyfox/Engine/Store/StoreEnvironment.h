#pragma once

#include "Tallyfox/Engine/Quota/CodexQuotaFetcher.h"
#include "TallyfoxCore/Time/Calendar.h"
#include "TallyfoxCore/Usage/QuotaSnapshot.h"

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

/// The outside world as the store sees it. The functions marked "any thread" are called from the load threads, several
/// at a time, and may outlive the store by a load that cannot be interrupted: they must own what they use. The others
/// are called on the main thread.
struct StoreEnvironment {
    std::function<Instant()> now; ///< any thread
    std::function<Calendar()> calendar; ///< the user's current calendar
    /// The granted home folder, resolved at each call; nothing without a valid grant. Any thread.
    std::function<std::optional<std::filesystem::path>()> authorizedHomeURL;
    /// Fetches the Codex quota, blocking for at most 10 seconds; ends early on a stop request. Empty: no fetch is
    /// attempted, which does not count as a failure. Any thread.
    std::function<std::variant<QuotaSnapshot, QuotaError>(std::stop_token)> fetchQuota;
    /// Ends at once every child process that fetches have started, and keeps fetches from starting another. Called when
    /// the store is destroyed; may be empty.
    std::function<void()> endFetches;
    /// Stores a grant for a folder the user has chosen; returns whether that succeeded.
    std::function<bool(const std::filesystem::path&)> grantHome;
    /// Where the folder picker starts.
    std::function<std::filesystem::path()> accountHome;
    HomeFolderPicker* picker = nullptr; ///< null where there is no display: requests are then ignored
};

/// The user's calendar now: the zone that `TZ` names; without `TZ`, the zone the system is set to. Where that is
/// unknown, or its data cannot be used, the calendar is UTC, as for every other program. Reads everything at each call
/// (a fraction of a millisecond), so that a changed setting takes effect at once. Any thread.
Calendar systemCalendar();

/// The store's environment on the real machine: system clock and zone, and the grant in the preferences file
/// `userDefaults`, or `home` in its place, which is not stored. Without quota and without picker.
StoreEnvironment makeStoreEnvironment(const std::filesystem::path& userDefaults,
                                      const std::optional<std::filesystem::path>& home);

/// Adds the quota that the user's own `codex` reports. Once in a program: it owns all child processes.
void addCodexQuota(StoreEnvironment& environment);

} // namespace tallyfox
