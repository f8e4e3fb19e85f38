#pragma once

#include "Tallyfox/Engine/Store/StoreEnvironment.h"
#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <QObject>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tallyfox {

/// The one observable store: loads both providers together on demand and on a timer, and publishes the results.
/// Main thread only. Each assignment to a published property emits its signal, right after the assignment, also when
/// the value is the same.
class UsageStore : public QObject {
    Q_OBJECT

public:
    explicit UsageStore(StoreEnvironment environment, QObject* parent = nullptr);
    /// Never blocks on a load: asks both to stop and ends every child process they started.
    ~UsageStore() override;

    [[nodiscard]] const std::vector<ProviderState>& states() const;
    [[nodiscard]] bool isRefreshing() const;
    [[nodiscard]] std::optional<Instant> lastUpdated() const;
    [[nodiscard]] std::optional<std::int64_t> combinedPercent() const;
    [[nodiscard]] bool hasHomeAccess() const;

    /// All of these, with the calendar of the refresh that published them.
    [[nodiscard]] UsageSnapshot snapshot() const;

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
