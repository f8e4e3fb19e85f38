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

/// What reading one provider's history in the granted home folder brought.
struct HistoryScan {
    std::optional<LocalUsageScanResult> result; ///< absent when there was nothing to scan, or the scan failed
    bool permissionRequired = false; ///< no folder has been granted
};

/// The folder of a provider's history below the granted home folder.
std::filesystem::path historyRoot(Provider provider, const std::filesystem::path& home);

/// Scans the provider's history below `home`; without a home it reads nothing and permission is required. A failed scan
/// gives no result.
HistoryScan scanHistory(Provider provider, const std::optional<std::filesystem::path>& home);

/// The loads of one refresh, one for each provider, each on a thread of its own and all at the same time. When the
/// last of them is done the receiver gets one custom event (`QEvent::User`) on its own thread. Main thread only.
///
/// A load can be stuck for as long as a stalled file system likes. So what the loads and this object share belongs to
/// all of them: a load that is abandoned posts into something that nobody looks at any more.
class RefreshRun {
public:
    using Updates = std::array<ProviderUpdate, allProviders.size()>;

    RefreshRun(const StoreEnvironment& environment, QObject* receiver);
    RefreshRun(const RefreshRun&) = delete;
    RefreshRun& operator=(const RefreshRun&) = delete;
    /// Abandons the loads unless they are done: as `abandon`, then waits a quarter of a second at most.
    ~RefreshRun();

    /// The calendar of the moment of the start, which the days of all updates are counted with.
    [[nodiscard]] const Calendar& calendar() const
    {
        return m_calendar;
    }

    /// The updates in the order of `allProviders`. Only after the event.
    [[nodiscard]] Updates takeUpdates();

    /// Asks the loads to stop; the receiver is not told any more.
    void abandon();

private:
    class Mailbox;

    Calendar m_calendar;
    std::shared_ptr<Mailbox> m_mailbox;
    std::stop_source m_stop;
    std::array<std::thread, allProviders.size()> m_threads;
};

} // namespace tallyfox
