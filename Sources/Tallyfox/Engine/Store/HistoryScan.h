#pragma once

#include "TallyfoxCore/Files/LocalUsageScanner.h"

#include <filesystem>
#include <optional>

namespace tallyfox {

/// What reading one provider's history in the granted home folder brought.
struct HistoryScan {
    std::optional<LocalUsageScanResult> result; ///< absent when there was nothing to scan, or the scan failed
    bool permissionRequired = false; ///< no folder has been granted
};

/// The folder of a provider's history below the granted home folder.
std::filesystem::path historyRoot(Provider provider, const std::filesystem::path& home);

/// Scans the provider's history below `home`; without a home nothing is read and permission is required. A failed
/// scan gives no result; its error is of no use to anybody and discarded.
HistoryScan scanHistory(Provider provider, const std::optional<std::filesystem::path>& home);

} // namespace tallyfox
