#include "Engine/Store/StoreFixture.h"
#include "Tallyfox/Engine/Preferences/HomeFolderGrant.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"
#include "Tallyfox/Engine/Store/RefreshRun.h"

namespace tallyfox::test {

namespace {

/// The store with the program's environment, its own preferences file and no `codex`.
class HomeAccessTest : public StoreTest {
protected:
    HomeAccessTest()
    {
        environment = makeStoreEnvironment(file(), std::nullopt);
        environment.picker = &picker;
    }

    [[nodiscard]] std::filesystem::path file() const
    {
        return m_folder.path() / "tallyfox" / "tallyfox.ini";
    }

    [[nodiscard]] std::optional<std::string> storedToken() const
    {
        return UserDefaults{file()}.homeFolderBookmark();
    }

    /// Creates a folder that can be moved and replaced.
    std::filesystem::path makeFolder(const char* name) const
    {
        std::filesystem::create_directory(m_folder.path() / name);
        return m_folder.path() / name;
    }

    void expectNoAccess()
    {
        UsageStore store{environment};
        EXPECT_FALSE(store.hasHomeAccess());
        refresh(store);
        for (const ProviderState& state : store.states())
            expectBadge(state, "Permission", "Home folder access required");
    }

private:
    ScratchFolder m_folder;
};

} // namespace

TEST_F(HomeAccessTest, freshInstallationHasNoAccessAndRequiresPermissionForBoth)
{
    expectNoAccess();
    EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(HomeAccessTest, requestShowsThePickerAndChangesNothingYet)
{
    environment.accountHome = [] { return std::filesystem::path{"/home/ada"}; };
    UsageStore store{environment};
    const Publications published{store};
    store.requestHomeAccess();
    ASSERT_EQ(picker.requests.size(), 1U);
    EXPECT_EQ(picker.requests[0].startFolder, "/home/ada");
    EXPECT_EQ(picker.requests[0].message, "Choose your home folder to read Claude and Codex usage metadata.");
    EXPECT_TRUE(published.list.empty());
}

TEST_F(HomeAccessTest, confirmedFolderIsStoredAndRefreshedAtOnce)
{
    UsageStore store{environment};
    const Publications published{store};
    store.requestHomeAccess();
    picker.confirm(home());
    EXPECT_EQ(published.list, (std::vector<std::string>{"hasHomeAccess true", "isRefreshing true"}));
    EXPECT_TRUE(storedToken().has_value());
    ASSERT_TRUE(spinUntil([&] { return !store.isRefreshing(); }));
    for (const ProviderState& state : store.states())
        EXPECT_EQ(rawValue(state.health), "Unavailable"); // scanned, but empty
    EXPECT_TRUE(UsageStore{environment}.hasHomeAccess());
}

TEST_F(HomeAccessTest, cancelledRequestChangesNothing)
{
    UsageStore store{environment};
    const Publications published{store};
    store.requestHomeAccess();
    picker.cancel();
    EXPECT_TRUE(published.list.empty());
    EXPECT_FALSE(store.hasHomeAccess());
    EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(HomeAccessTest, failedGrantRevokesAccessAndKeepsTheStoredOne)
{
    UsageStore store{environment};
    store.requestHomeAccess();
    picker.confirm(home());
    ASSERT_TRUE(spinUntil([&] { return !store.isRefreshing(); }));
    const auto before = storedToken();
    const Publications published{store};
    store.requestHomeAccess();
    picker.confirm(home() / "gone in the meantime");
    EXPECT_EQ(published.list, std::vector<std::string>{"hasHomeAccess false"});
    EXPECT_EQ(storedToken(), before);
}

TEST_F(HomeAccessTest, newGrantReplacesTheOldOne)
{
    UsageStore store{environment};
    store.requestHomeAccess();
    picker.confirm(home());
    const auto other = makeFolder("other");
    store.requestHomeAccess();
    picker.confirm(other);
    EXPECT_EQ(environment.authorizedHomeURL(), other);
}

TEST_F(HomeAccessTest, folderConfirmedAfterTheStoreIsDestroyedIsStoredOnly)
{
    auto store = std::make_unique<UsageStore>(environment);
    store->requestHomeAccess();
    store.reset();
    picker.confirm(home());
    EXPECT_EQ(environment.authorizedHomeURL(), home());
}

TEST_F(HomeAccessTest, observerOfTheGrantMayDestroyTheStore)
{
    auto store = std::make_unique<UsageStore>(environment);
    QObject::connect(store.get(), &UsageStore::hasHomeAccessPublished, [&] { store.reset(); });
    store->requestHomeAccess();
    picker.confirm(home());
    EXPECT_EQ(store, nullptr);
}

TEST_F(HomeAccessTest, requestWithoutAPickerIsIgnored)
{
    environment.picker = nullptr;
    UsageStore store{environment};
    const Publications published{store};
    store.requestHomeAccess();
    EXPECT_TRUE(published.list.empty());
}

TEST_F(HomeAccessTest, staleBookmarkGivesNoAccessAndStaysStored)
{
    const auto folder = makeFolder("granted");
    ASSERT_TRUE(environment.grantHome(folder));
    std::filesystem::rename(folder, folder.native() + "-moved");
    makeFolder("granted");
    const auto token = storedToken();
    ASSERT_TRUE(std::holds_alternative<HomeFolderGrant::Stale>(HomeFolderGrant::resolve(token.value())));
    expectNoAccess();
    EXPECT_EQ(storedToken(), token);
}

TEST_F(HomeAccessTest, bookmarkOfARemovedFolderGivesNoAccessAndStaysStored)
{
    const auto folder = makeFolder("granted");
    ASSERT_TRUE(environment.grantHome(folder));
    std::filesystem::remove(folder);
    const auto token = storedToken();
    expectNoAccess();
    EXPECT_EQ(storedToken(), token);
}

TEST_F(HomeAccessTest, damagedBookmarkGivesNoAccess)
{
    ASSERT_TRUE(UserDefaults{file()}.setHomeFolderBookmark("tallyfox-folder-grant 1\ninode"));
    expectNoAccess();
}

TEST_F(HomeAccessTest, accessLostLaterShowsInTheNextRefreshButNotInHasHomeAccess)
{
    const auto folder = makeFolder("granted");
    ASSERT_TRUE(environment.grantHome(folder));
    UsageStore store{environment};
    std::filesystem::remove(folder);
    refresh(store);
    expectBadge(store.states()[0], "Permission", "Home folder access required");
    EXPECT_TRUE(store.hasHomeAccess());
}

TEST_F(HomeAccessTest, grantedFolderWithoutHistoriesIsValid)
{
    ASSERT_TRUE(environment.grantHome(home()));
    UsageStore store{environment};
    refresh(store);
    EXPECT_TRUE(store.hasHomeAccess());
    expectBadge(store.states()[0], "Unavailable", "Log in via CLI and refresh");
}

TEST_F(HomeAccessTest, givenHomeReplacesTheGrantAndIsNotStored)
{
    UsageStore store{makeStoreEnvironment(file(), home())};
    EXPECT_TRUE(store.hasHomeAccess());
    refresh(store);
    expectBadge(store.states()[0], "Unavailable", "Log in via CLI and refresh");
    EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(HomeAccessTest, environmentWithoutQuotaFetchesNothing)
{
    EXPECT_FALSE(environment.fetchQuota);
    EXPECT_FALSE(environment.endFetches);
}

TEST(HistoryScan, historiesAreBelowTheGrantedFolder)
{
    EXPECT_EQ(historyRoot(Provider::claude, "/home/ada"), "/home/ada/.claude/projects");
    EXPECT_EQ(historyRoot(Provider::codex, "/home/ada"), "/home/ada/.codex/sessions");
}

TEST(HistoryScan, withoutFolderPermissionIsRequiredAndNothingIsRead)
{
    const HistoryScan scan = scanHistory(Provider::claude, std::nullopt);
    EXPECT_TRUE(scan.permissionRequired);
    EXPECT_EQ(scan.result, std::nullopt);
}

TEST(HistoryScan, failedScanHasNoResultAndNeedsNoPermission)
{
    const ScratchFolder folder;
    const auto file = folder.path() / ".claude/projects/a.jsonl";
    writeFile(file, "{}\n");
    std::filesystem::permissions(folder.path(), std::filesystem::perms{0755});
    std::filesystem::permissions(file, std::filesystem::perms::none);
    const OrdinaryUser user;
    const HistoryScan scan = scanHistory(Provider::claude, folder.path());
    EXPECT_FALSE(scan.permissionRequired);
    EXPECT_EQ(scan.result, std::nullopt);
}

TEST(HistoryScan, missingFolderHasNoResultAndNeedsNoPermission)
{
    const HistoryScan scan = scanHistory(Provider::claude, "/nowhere/at/all");
    EXPECT_FALSE(scan.permissionRequired);
    EXPECT_EQ(scan.result, LocalUsageScanResult{});
}

} // namespace tallyfox::test
