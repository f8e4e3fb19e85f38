#pragma once

#include "Tallyfox/Engine/Store/RefreshTimer.h"
#include "Tallyfox/Engine/Store/StoreEnvironment.h"
#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <QObject>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tallyfox {

class RefreshRun;

/// Loads all providers together, on demand and on a timer, and publishes the results. Each assignment to a published
/// property emits its signal right afterwards, even when the value is unchanged. Main thread only.
class UsageStore : public QObject {
    Q_OBJECT

public:
    explicit UsageStore(StoreEnvironment environment, QObject* parent = nullptr);
    /// Asks the loads to stop and ends every child process they started. Waits at most 250 milliseconds for them.
    ~UsageStore() override;

    [[nodiscard]] const std::vector<ProviderState>& states() const
    {
        return m_states;
    }
    [[nodiscard]] bool isRefreshing() const
    {
        return m_isRefreshing;
    }
    [[nodiscard]] std::optional<Instant> lastUpdated() const
    {
        return m_lastUpdated;
    }
    [[nodiscard]] std::optional<std::int64_t> combinedPercent() const
    {
        return m_combinedPercent;
    }
    [[nodiscard]] bool hasHomeAccess() const
    {
        return m_hasHomeAccess;
    }

    /// All of the above, with the calendar of the refresh that published them.
    [[nodiscard]] UsageSnapshot snapshot() const;

    /// Starts a refresh and returns; does nothing while one is running.
    void refresh();
    /// Refreshes every `minutes` minutes (at least 1), first after one whole interval.
    void setRefreshInterval(std::int64_t minutes);
    /// Nothing before `setRefreshInterval`.
    [[nodiscard]] std::optional<std::chrono::seconds> refreshInterval() const
    {
        return m_interval;
    }
    /// Lets the user choose the home folder; sets `hasHomeAccess` and refreshes afterwards.
    void requestHomeAccess();

Q_SIGNALS:
    void statesPublished();
    void isRefreshingPublished(bool isRefreshing);
    void lastUpdatedPublished();
    void combinedPercentPublished();
    void hasHomeAccessPublished(bool hasHomeAccess);

protected:
    void customEvent(QEvent* event) override; ///< all loads of a refresh are done

private:
    void publish(std::vector<ProviderState> states);
    bool setRefreshing(bool isRefreshing);
    bool setHomeAccess(bool hasAccess);
    template <typename Value, typename Signal, typename... Arguments>
    bool assign(Value& property, Value value, Signal signal, Arguments... arguments);

    StoreEnvironment m_environment;
    Calendar m_calendar; ///< with which the days of `m_states` were counted
    std::vector<ProviderState> m_states;
    bool m_isRefreshing = false;
    std::optional<Instant> m_lastUpdated;
    std::optional<std::int64_t> m_combinedPercent;
    bool m_hasHomeAccess;
    std::optional<std::chrono::seconds> m_interval;
    RefreshTimer m_timer{[this] { refresh(); }};
    std::unique_ptr<RefreshRun> m_run; ///< set while refreshing
};

} // namespace tallyfox
