#include "Tallyfox/Engine/Store/StoreEnvironment.h"

#include "Tallyfox/Engine/Preferences/HomeFolderGrant.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"
#include "Tallyfox/Engine/Quota/ChildReaper.h"
#include "Tallyfox/Engine/System/SystemPaths.h"

#include <QByteArray>

#include <chrono>
#include <memory>

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
    const auto token = HomeFolderGrant::makeToken(folder);
    return token && UserDefaults{userDefaults}.setHomeFolderBookmark(*token);
}

/// Systems without a fixed folder of zones name it in `TZDIR`.
Calendar::Database systemDatabase()
{
    Calendar::Database database;
    const QByteArray folder = qgetenv("TZDIR");
    if (folder.startsWith('/'))
        database.zones = folder.toStdString();
    return database;
}

} // namespace

Calendar systemCalendar()
{
    const Calendar::Database database = systemDatabase();
    const bool isSet = qEnvironmentVariableIsSet("TZ");
    const QByteArray timeZone = qgetenv("TZ");
    const auto calendar = isSet ? Calendar::named(timeZone.toStdString(), database) : Calendar::ofSystem(database);
    return calendar.value_or(Calendar::utc());
}

StoreEnvironment makeStoreEnvironment(const std::filesystem::path& userDefaults,
                                      const std::optional<std::filesystem::path>& home)
{
    StoreEnvironment environment;
    environment.now = systemNow;
    environment.calendar = systemCalendar;
    environment.authorizedHomeURL = [home, userDefaults] { return home ? home : grantedHome(userDefaults); };
    environment.grantHome = [userDefaults](const std::filesystem::path& folder) {
        return storeGrant(userDefaults, folder);
    };
    environment.accountHome = accountHome;
    return environment;
}

void addCodexQuota(StoreEnvironment& environment)
{
    const auto reaper = std::make_shared<ChildReaper>();
    environment.fetchQuota = [reaper](const std::stop_token& stop) {
        return CodexQuotaFetcher::fetch(CodexQuotaFetcher::candidates(accountHome()), *reaper, stop);
    };
    environment.endFetches = [reaper] { reaper->endAll(); };
}

} // namespace tallyfox
