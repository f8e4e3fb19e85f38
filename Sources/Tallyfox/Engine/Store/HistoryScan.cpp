#include "Tallyfox/Engine/Store/HistoryScan.h"

#include "Tallyfox/Engine/Preferences/HomeFolderAccess.h"

namespace tallyfox {

std::filesystem::path historyRoot(Provider provider, const std::filesystem::path& home)
{
    return home / traitsOf(provider).historyFolder;
}

HistoryScan scanHistory(Provider provider, const std::optional<std::filesystem::path>& home)
{
    if (!home)
        return {.result = std::nullopt, .permissionRequired = true};
    const HomeFolderAccess access{*home};
    HistoryScan scan;
    auto outcome = LocalUsageScanner::scanResult(provider, historyRoot(provider, *home));
    if (auto* result = std::get_if<LocalUsageScanResult>(&outcome))
        scan.result = std::move(*result);
    return scan;
}

} // namespace tallyfox
