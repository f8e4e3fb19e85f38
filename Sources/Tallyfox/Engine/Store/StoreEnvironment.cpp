#include "Tallyfox/Engine/Store/StoreEnvironment.h"

#include "Tallyfox/Engine/Preferences/HomeFolderGrant.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"
#include "Tallyfox/Engine/Quota/CodexQuotaFetcher.h"
#include "Tallyfox/Engine/System/SystemCalendar.h"
#include "Tallyfox/Engine/System/SystemPaths.h"

#include <chrono>

namespace tallyfox {

namespace {

Instant systemNow()
{
    return std::chrono::floor<Instant::duration>(std::chrono::system_clock::now());
}

std::optional<std::filesystem::path> grantedHome(const std::filesystem::path& userDefaults)
{
    const auto token = UserDefaults{userDefaults}.homeFolderBookmark();
    if (!token)
        return std::nullopt;
    const auto resolution = HomeFolderGrant::resolve(*token);
    const auto* location = std::get_if<HomeFolderGrant::Location>(&resolution);
    return location ? std::optional{location->path} : std::nullopt;
}

bool storeGrant(const std::filesystem::path& userDefaults, const std::filesystem::path& folder)
{
    const auto token = HomeFolderGrant::token(folder);
    return token && UserDefaults{userDefaults}.setHomeFolderBookmark(*token);
}

} // namespace

UsageStoreEnvironment systemEnvironment(const StoreEnvironmentOptions& options)
{
    UsageStoreEnvironment environment;
    environment.now = systemNow;
    environment.calendar = systemCalendar;
    environment.authorizedHomeURL = [home = options.home, file = options.userDefaults] {
        return home ? home : grantedHome(file);
    };
    environment.grantHome = [file = options.userDefaults](const std::filesystem::path& folder) {
        return storeGrant(file, folder);
    };
    environment.accountHome = accountHome;
    environment.picker = options.picker;
    if (options.fetchQuota) {
        environment.fetchQuota = [reaper = options.reaper](const std::stop_token& stop) {
            return CodexQuotaFetcher::fetch(CodexQuotaFetcher::candidates(accountHome()), *reaper, stop);
        };
        environment.endFetches = [reaper = options.reaper] { reaper->endAll(); };
    }
    return environment;
}

} // namespace tallyfox
