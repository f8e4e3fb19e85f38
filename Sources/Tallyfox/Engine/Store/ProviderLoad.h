#pragma once

#include "Tallyfox/Engine/Store/ProviderState.h"
#include "Tallyfox/Engine/Store/StoreEnvironment.h"
#include "TallyfoxCore/Files/LocalUsageScanner.h"

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

/// Loads one provider once: its history first, then its quota, if it has one. The days are those of `calendar`. Every
/// failure, including any exception, becomes part of the update. Any thread.
ProviderUpdate loadProvider(Provider provider, const StoreEnvironment& environment, const Calendar& calendar,
                            const std::stop_token& stop) noexcept;

/// The update of a load that could not even be started.
ProviderUpdate failedLoad(Provider provider, const StoreEnvironment& environment) noexcept;

} // namespace tallyfox
