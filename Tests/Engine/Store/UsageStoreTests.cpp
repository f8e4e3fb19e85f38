#include "Engine/Store/StoreFixture.h"
#include "TallyfoxCore/Files/LocalUsageScanner.h"

#include <atomic>
#include <barrier>
#include <stdexcept>
#include <thread>

namespace tallyfox::test {

namespace {

class UsageStoreTest : public StoreTest { };

} // namespace

TEST_F(UsageStoreTest, newStoreWaitsForTheFirstRefresh)
{
    const UsageStore store{environment};
    ASSERT_EQ(store.states().size(), 2U);
    EXPECT_EQ(store.states()[0], initialState(Provider::claude, now, Calendar::utc()));
    EXPECT_EQ(store.states()[1], initialState(Provider::codex, now, Calendar::utc()));
    EXPECT_FALSE(store.isRefreshing());
    EXPECT_EQ(store.lastUpdated(), std::nullopt);
    EXPECT_EQ(store.combinedPercent(), std::nullopt);
    EXPECT_TRUE(store.hasHomeAccess());
    EXPECT_EQ(store.refreshInterval(), std::nullopt);
}

TEST_F(UsageStoreTest, refreshPublishesInAFixedOrder)
{
    UsageStore store{environment};
    const Publications published{store};
    store.refresh();
    EXPECT_EQ(published.list, std::vector<std::string>{"isRefreshing true"});
    ASSERT_TRUE(spinUntil([&] { return !store.isRefreshing(); }));
    EXPECT_EQ(published.list, refreshPublications());
}

TEST_F(UsageStoreTest, everySignalFollowsItsOwnAssignmentAndPrecedesTheNext)
{
    environment.fetchQuota = [](const std::stop_token&) { return exactQuota(72.5); };
    UsageStore store{environment};
    QObject::connect(&store, &UsageStore::statesPublished, &store, [&] {
        EXPECT_TRUE(store.states()[1].quota.has_value());
        EXPECT_EQ(store.lastUpdated(), std::nullopt);
    });
    QObject::connect(&store, &UsageStore::lastUpdatedPublished, &store, [&] {
        EXPECT_EQ(store.lastUpdated(), now);
        EXPECT_EQ(store.combinedPercent(), std::nullopt);
    });
    QObject::connect(&store, &UsageStore::combinedPercentPublished, &store, [&] {
        EXPECT_EQ(store.combinedPercent(), 73);
        EXPECT_TRUE(store.isRefreshing());
    });
    refresh(store);
}

TEST_F(UsageStoreTest, unchangedValuesArePublishedAgain)
{
    UsageStore store{environment};
    refresh(store);
    const Publications published{store};
    refresh(store);
    EXPECT_EQ(published.list, refreshPublications());
}

TEST_F(UsageStoreTest, refreshDuringARefreshHasNoEffect)
{
    UsageStore store{environment};
    const Publications published{store};
    store.refresh();
    store.refresh();
    ASSERT_TRUE(spinUntil([&] { return !store.isRefreshing(); }));
    spinFor(std::chrono::milliseconds{50});
    EXPECT_EQ(published.list, refreshPublications());
}

TEST_F(UsageStoreTest, refreshFromAnObserverOfTheLastSignalStartsANewRefresh)
{
    UsageStore store{environment};
    const Publications published{store};
    const auto once = std::make_shared<bool>(false);
    QObject::connect(&store, &UsageStore::statesPublished, &store,
                     [&] { store.refresh(); }); // ignored: one is still running
    QObject::connect(&store, &UsageStore::isRefreshingPublished, &store, [&, once](bool isRefreshing) {
        if (!isRefreshing && !std::exchange(*once, true))
            store.refresh();
    });
    store.refresh();
    ASSERT_TRUE(spinUntil([&] { return published.list.size() >= 10 && !store.isRefreshing(); }));
    std::vector<std::string> twice = refreshPublications();
    for (const std::string& publication : refreshPublications())
        twice.push_back(publication);
    EXPECT_EQ(published.list, twice);
}

TEST_F(UsageStoreTest, historiesOfBothProvidersBecomeTheirStatesInOrder)
{
    writeClaudeHistory(1200);
    writeCodexHistory(34);
    UsageStore store{environment};
    refresh(store);
    ASSERT_EQ(store.states().size(), 2U);
    EXPECT_EQ(store.states()[0].provider, Provider::claude);
    EXPECT_EQ(store.states()[0].summary.todayTokens, 1200);
    expectBadge(store.states()[0], "Local history", "Observed from local history");
    EXPECT_EQ(store.states()[1].provider, Provider::codex);
    EXPECT_EQ(store.states()[1].summary.todayTokens, 34);
    EXPECT_EQ(store.states()[1].updatedAt, now);
}

TEST_F(UsageStoreTest, partiallyReadHistoryIsMarkedPartial)
{
    writeClaudeHistory(1200);
    const auto file = home() / ".claude/projects/tidings/session.jsonl";
    writeFile(file, std::string(LocalUsageScanner::tailSize, ' ') + '\n' + readFile(file));
    UsageStore store{environment};
    refresh(store);
    expectBadge(store.states()[0], "Local history", "Partial local history");
    EXPECT_TRUE(store.states()[0].isPartialHistory);
}

TEST_F(UsageStoreTest, withoutQuotaThereIsNoCombinedPercent)
{
    UsageStore store{environment};
    refresh(store);
    EXPECT_EQ(store.combinedPercent(), std::nullopt);
    EXPECT_EQ(store.lastUpdated(), now);
}

TEST_F(UsageStoreTest, freshQuotaConnectsCodexAndSetsThePercent)
{
    environment.fetchQuota = [](const std::stop_token&) { return exactQuota(72.5); };
    UsageStore store{environment};
    refresh(store);
    EXPECT_EQ(store.combinedPercent(), 73);
    expectBadge(store.states()[1], "Connected", "Official usage API");
    EXPECT_EQ(store.states()[0].quota, std::nullopt);
}

TEST_F(UsageStoreTest, quotaKeptAfterAFailureIsStaleAndStillCounts)
{
    const auto round = std::make_shared<std::atomic<int>>(0);
    environment.fetchQuota = [round](const std::stop_token&) -> std::variant<QuotaSnapshot, QuotaError> {
        if (round->fetch_add(1) == 0)
            return exactQuota(40);
        return SourceError::timeout;
    };
    UsageStore store{environment};
    refresh(store);
    refresh(store);
    expectBadge(store.states()[1], "Stale", "Showing last successful quota");
    EXPECT_TRUE(store.states()[1].isQuotaStale);
    EXPECT_EQ(store.combinedPercent(), 40);
}

TEST_F(UsageStoreTest, afterAnyFetchFailureTheHistoryDeterminesTheBadge)
{
    writeCodexHistory(34);
    for (const QuotaError& error :
         {QuotaError{SourceError::missingCLI}, QuotaError{SourceError::cancelled}, QuotaError{DecodingError::malformed},
          QuotaError{std::make_error_code(std::errc::permission_denied)}})
    {
        environment.fetchQuota = [error](const std::stop_token&) { return error; };
        UsageStore store{environment};
        refresh(store);
        expectBadge(store.states()[1], "Local history", "Observed from local history");
        EXPECT_FALSE(store.states()[1].isQuotaStale);
    }
}

TEST_F(UsageStoreTest, refreshWithoutFetchDoesNotCountAsAFailedOne)
{
    UsageStore store{environment};
    refresh(store);
    expectBadge(store.states()[1], "Unavailable", "Log in via CLI and refresh");
    EXPECT_FALSE(store.states()[1].isQuotaStale);
}

TEST_F(UsageStoreTest, withoutGrantBothProvidersRequirePermissionAndTheRefreshCompletes)
{
    environment.authorizedHomeURL = [] { return std::nullopt; };
    environment.fetchQuota = [](const std::stop_token&) { return SourceError::missingCLI; };
    UsageStore store{environment};
    EXPECT_FALSE(store.hasHomeAccess());
    refresh(store);
    for (const ProviderState& state : store.states()) {
        expectBadge(state, "Permission", "Home folder access required");
        EXPECT_EQ(state.updatedAt, distantPast);
    }
    EXPECT_EQ(store.lastUpdated(), now);
}

TEST_F(UsageStoreTest, failedScanKeepsTheEarlierHistory)
{
    writeClaudeHistory(1200);
    UsageStore store{environment};
    refresh(store);
    std::filesystem::permissions(home(), std::filesystem::perms{0755});
    std::filesystem::permissions(home() / ".claude/projects/tidings/session.jsonl", std::filesystem::perms::none);
    const OrdinaryUser user;
    refresh(store);
    expectBadge(store.states()[0], "Local history", "Observed from local history");
    EXPECT_EQ(store.states()[0].summary.todayTokens, 1200);
}

TEST_F(UsageStoreTest, loadsRunConcurrentlyAndOffTheMainThread)
{
    const auto meeting = std::make_shared<std::barrier<>>(2);
    const auto mainThread = std::this_thread::get_id();
    const auto calls = std::make_shared<std::atomic<int>>(0);
    environment.authorizedHomeURL = [=, folder = home()]() -> std::optional<std::filesystem::path> {
        if (calls->fetch_add(1) == 0)
            return folder; // called by the constructor
        EXPECT_NE(std::this_thread::get_id(), mainThread);
        meeting->arrive_and_wait(); // neither load can continue without the other
        return folder;
    };
    UsageStore store{environment};
    refresh(store);
    EXPECT_EQ(calls->load(), 3);
}

TEST_F(UsageStoreTest, neitherProviderIsPublishedWithoutTheOther)
{
    const auto isReleased = std::make_shared<std::atomic<bool>>(false);
    environment.fetchQuota = [isReleased](const std::stop_token&) {
        isReleased->wait(false);
        return exactQuota(10);
    };
    UsageStore store{environment};
    const Publications published{store};
    store.refresh();
    spinFor(std::chrono::milliseconds{100});
    EXPECT_EQ(published.list, std::vector<std::string>{"isRefreshing true"});
    *isReleased = true;
    isReleased->notify_all();
    ASSERT_TRUE(spinUntil([&] { return !store.isRefreshing(); }));
    EXPECT_EQ(published.list, refreshPublications());
}

TEST_F(UsageStoreTest, exceptionsInLoadsBecomeUpdates)
{
    environment.fetchQuota = [](const std::stop_token&) -> std::variant<QuotaSnapshot, QuotaError> {
        throw std::runtime_error{"no quota"};
    };
    const auto calls = std::make_shared<std::atomic<int>>(0);
    environment.authorizedHomeURL = [calls, folder = home()]() -> std::optional<std::filesystem::path> {
        if (calls->fetch_add(1) > 0)
            throw 42;
        return folder;
    };
    UsageStore store{environment};
    const Publications published{store};
    refresh(store);
    EXPECT_EQ(published.list, refreshPublications());
    for (const ProviderState& state : store.states())
        expectBadge(state, "Permission", "Home folder access required");
}

TEST_F(UsageStoreTest, exceptionOfTheClockInALoadDoesNotLoseTheRefresh)
{
    writeClaudeHistory(5);
    const auto mainThread = std::this_thread::get_id();
    environment.now = [mainThread, time = now] {
        if (std::this_thread::get_id() != mainThread)
            throw std::runtime_error{"no clock"};
        return time;
    };
    UsageStore store{environment};
    refresh(store);
    expectBadge(store.states()[0], "Unavailable", "Log in via CLI and refresh");
    EXPECT_EQ(store.lastUpdated(), now);
}

TEST_F(UsageStoreTest, observerMayDestroyTheStoreAtAnySignal)
{
    for (int fatal = 0; fatal < 5; ++fatal) {
        auto store = std::make_unique<UsageStore>(environment);
        int count = 0;
        const auto observe = [&] {
            if (count++ == fatal)
                store.reset();
        };
        QObject::connect(store.get(), &UsageStore::isRefreshingPublished, observe);
        QObject::connect(store.get(), &UsageStore::statesPublished, observe);
        QObject::connect(store.get(), &UsageStore::lastUpdatedPublished, observe);
        QObject::connect(store.get(), &UsageStore::combinedPercentPublished, observe);
        store->refresh();
        ASSERT_TRUE(spinUntil([&] { return !store; })) << fatal;
        EXPECT_EQ(count, fatal + 1);
    }
}

} // namespace tallyfox::test
