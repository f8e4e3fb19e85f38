#pragma once

#include "Tallyfox/Engine/Store/ProviderState.h"
#include "Tallyfox/Engine/Store/StoreEnvironment.h"
#include "TallyfoxCore/Files/LocalUsageScanner.h"

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <thread>

class QObject;

namespace tallyfox {

/// The result of reading one provider's history in the granted home folder.
struct HistoryScan {
    std::optional<LocalUsageScanResult> result; ///< absent when there was nothing to scan, or the scan failed
    bool permissionRequired = false; ///< no folder has been granted
};

/// The folder of a provider's history below the granted home folder.
std::filesystem::path historyRoot(Provider provider, const std::filesystem::path& home);

/// Scans the provider's history below `home`; without a home it reads nothing and permission is required. A failed scan
/// gives no result.
HistoryScan scanHistory(Provider provider, const std::optional<std::filesystem::path>& home);

/// The loads of one refresh, one per provider, each on its own thread and all at the same time. When the last of them
/// is done, the receiver gets one custom event (`QEvent::User`) on its own thread. Main thread only.
///
/// A stalled file system can block a load indefinitely. The loads therefore share ownership of the mailbox with this
/// object: an abandoned load delivers into a mailbox that nobody reads.
class RefreshRun {
public:
    using Updates = std::array<ProviderUpdate, allProviders.size()>;

    RefreshRun(const StoreEnvironment& environment, QObject* receiver);
    RefreshRun(const RefreshRun&) = delete;
    RefreshRun& operator=(const RefreshRun&) = delete;
    /// Abandons the loads and waits for them, for at most 250 milliseconds.
    ~RefreshRun();

    /// The calendar at the start, with which the days of all updates are counted.
    [[nodiscard]] const Calendar& calendar() const
    {
        return m_calendar;
    }

    /// The updates in the order of `allProviders`. Only after the event; once.
    [[nodiscard]] Updates takeUpdates();

    /// Asks the loads to stop; the receiver gets no event.
    void abandon();

private:
    class Mailbox;

    Calendar m_calendar;
    std::shared_ptr<Mailbox> m_mailbox;
    std::stop_source m_stop;
    std::array<std::thread, allProviders.size()> m_threads;
};

} // namespace tallyfox
