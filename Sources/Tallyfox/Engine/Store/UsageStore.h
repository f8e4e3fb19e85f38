#pragma once

#include "Tallyfox/Engine/Quota/CodexQuotaFetcher.h"
#include "Tallyfox/Engine/Store/ProviderState.h"

#include <QObject>
#include <QPointer>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <variant>
#include <vector>

namespace tallyfox {

class HomeFolderPicker;

/// The outside world as the store sees it. The functions marked "any thread" are called from the load threads, several
/// at a time, and may outlive the store by a load that cannot be interrupted: they must own what they use.
struct UsageStoreEnvironment {
    std::function<Instant()> now; ///< any thread
    std::function<Calendar()> calendar; ///< the user's current calendar; any thread
    /// The granted home folder, resolved afresh at each call; nothing without a valid grant. Any thread.
    std::function<std::optional<std::filesystem::path>()> authorizedHomeURL;
    /// Fetches the Codex quota, blocking for at most 10 seconds; ends early on a stop request. Empty: no fetch is
    /// attempted, which is no failure. Any thread.
    std::function<std::variant<QuotaSnapshot, QuotaError>(std::stop_token)> fetchQuota;
    /// Ends at once every child process that fetches have started and lets no fetch start another. Called when the
    /// store goes; may be empty. Main thread.
    std::function<void()> endFetches;
    /// Stores a grant for a folder the user has chosen; whether that succeeded. Main thread.
    std::function<bool(const std::filesystem::path&)> grantHome;
    /// Where the folder picker starts. Main thread.
    std::function<std::filesystem::path()> accountHome;
    HomeFolderPicker* picker = nullptr; ///< may be null where there is no display: requests are then ignored
};

/// The one observable store: loads both providers together on demand and on a timer, and publishes the results.
/// Main thread only. Each assignment to a published property emits its signal, right after the assignment, also when
/// the value is the same.
class UsageStore : public QObject {
    Q_OBJECT

public:
    explicit UsageStore(UsageStoreEnvironment environment, QObject* parent = nullptr);
    /// Never blocks on a load: asks both to stop and ends every child process they started.
    ~UsageStore() override;

    [[nodiscard]] const std::vector<ProviderState>& states() const;
    [[nodiscard]] bool isRefreshing() const;
    [[nodiscard]] std::optional<Instant> lastUpdated() const;
    [[nodiscard]] std::optional<std::int64_t> combinedPercent() const;
    [[nodiscard]] bool hasHomeAccess() const;

    /// Starts one refresh and returns; does nothing while one is running.
    void refresh();
    /// Refreshes every `minutes` minutes (at least 1), the first time one whole interval from now.
    void setRefreshInterval(std::int64_t minutes);
    /// The armed interval; nothing before `setRefreshInterval`.
    [[nodiscard]] std::optional<std::chrono::seconds> refreshInterval() const;
    /// Lets the user choose the home folder; the outcome arrives through `hasHomeAccess` and a refresh.
    void requestHomeAccess();

Q_SIGNALS:
    void statesPublished();
    void isRefreshingPublished(bool isRefreshing);
    void lastUpdatedPublished();
    void combinedPercentPublished();
    void hasHomeAccessPublished(bool hasHomeAccess);

private:
    class Private;
    std::unique_ptr<Private> m;
};

} // namespace tallyfox
