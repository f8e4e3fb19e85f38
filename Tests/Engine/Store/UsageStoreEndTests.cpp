#include "Engine/Store/StoreFixture.h"
#include "Support/FakeCodexFolder.h"
#include "Support/ProcessTable.h"
#include "Tallyfox/Engine/Quota/ChildReaper.h"
#include "Tallyfox/Engine/Quota/CodexQuotaFetcher.h"

#include <atomic>
#include <thread>

namespace tallyfox::test {

namespace {

/// Blocks loads until the test opens it.
class Obstacle {
public:
    void pass()
    {
        ++m_waiting;
        m_isOpen.wait(false);
        --m_waiting;
    }
    void open()
    {
        m_isOpen = true;
        m_isOpen.notify_all();
    }
    [[nodiscard]] int waiting() const
    {
        return m_waiting;
    }

private:
    std::atomic<bool> m_isOpen = false;
    std::atomic<int> m_waiting = 0;
};

class UsageStoreEndTest : public StoreTest {
protected:
    /// Blocks both loads before their scans, as a stalled file system would.
    std::shared_ptr<Obstacle> blockScans()
    {
        auto obstacle = std::make_shared<Obstacle>();
        const auto mainThread = std::this_thread::get_id();
        environment.authorizedHomeURL = [obstacle, mainThread, folder = home()] {
            if (std::this_thread::get_id() != mainThread)
                obstacle->pass();
            return std::optional{folder};
        };
        return obstacle;
    }

    /// Uses the real fetcher and reaper with a fake `codex`.
    void useFake(const FakeCodexFolder& fake)
    {
        environment.fetchQuota = [reaper = reaper, codex = fake.executable()](const std::stop_token& stop) {
            return CodexQuotaFetcher::fetch({codex}, *reaper, stop);
        };
        environment.endFetches = [reaper = reaper] { reaper->endAll(); };
    }

    std::shared_ptr<ChildReaper> reaper = std::make_shared<ChildReaper>();
};

} // namespace

TEST_F(UsageStoreEndTest, destroyingTheStoreDoesNotWaitForStuckScans)
{
    const auto obstacle = blockScans();
    auto store = std::make_unique<UsageStore>(environment);
    store->refresh();
    ASSERT_TRUE(spinUntil([&] { return obstacle->waiting() == 2; }));
    store.reset(); // would hang here
    EXPECT_EQ(obstacle->waiting(), 2);
    obstacle->open(); // what the loads deliver now must be ignored
    ASSERT_TRUE(spinUntil([&] { return obstacle->waiting() == 0; }));
    spinFor(std::chrono::milliseconds{100});
}

TEST_F(UsageStoreEndTest, loadThatContinuesAfterTheStoreStartsNoChild)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "normal"};
    useFake(fake);
    const auto obstacle = blockScans();
    auto store = std::make_unique<UsageStore>(environment);
    store->refresh();
    ASSERT_TRUE(spinUntil([&] { return obstacle->waiting() == 2; }));
    store.reset();
    obstacle->open();
    ASSERT_TRUE(spinUntil([&] { return obstacle->waiting() == 0; }));
    spinFor(std::chrono::milliseconds{200});
    EXPECT_FALSE(fake.hasRun());
}

TEST_F(UsageStoreEndTest, destroyingTheStoreDuringAFetchLeavesNoChild)
{
    for (const char* const mode : {"silent", "flood", "ignoresTermination", "grandchildKeepsPipe"}) {
        reaper = std::make_shared<ChildReaper>();
        const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, mode};
        useFake(fake);
        auto store = std::make_unique<UsageStore>(environment);
        store->refresh();
        const pid_t child = fake.processId();
        store.reset();
        EXPECT_EQ(remainsInTheEnd(child), "") << mode;
        EXPECT_EQ(childCount(), 0) << mode;
    }
}

TEST_F(UsageStoreEndTest, unpublishedLoadsAreDroppedWithTheStore)
{
    auto store = std::make_unique<UsageStore>(environment);
    store->refresh();
    std::this_thread::sleep_for(std::chrono::milliseconds{200}); // the event is in the queue
    store.reset();
    spinFor(std::chrono::milliseconds{50});
}

TEST_F(UsageStoreEndTest, destroyingAnUnusedStoreEndsFetches)
{
    const auto ended = std::make_shared<int>(0);
    environment.endFetches = [ended] { ++*ended; };
    std::make_unique<UsageStore>(environment).reset();
    EXPECT_EQ(*ended, 1);
}

TEST_F(UsageStoreEndTest, programCanExitDuringAStuckLoad)
{
    EXPECT_EXIT(
        {
            const auto obstacle = blockScans();
            {
                UsageStore store{environment};
                store.refresh();
                spinUntil([&] { return obstacle->waiting() == 2; });
            }
            std::exit(0); // with the clean-up of a normal exit
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(UsageStoreEndTest, replyOfARealChildConnectsCodexAndTheChildEnds)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "soon"};
    useFake(fake);
    UsageStore store{environment};
    refresh(store);
    expectBadge(store.states()[1], "Connected", "Official usage API");
    EXPECT_EQ(store.combinedPercent(), 43);
    EXPECT_EQ(remainsInTheEnd(fake.processId()), "");
}

TEST_F(UsageStoreEndTest, silentChildIsEndedAtTheLimitAndTheHistoryIsShown)
{
    writeCodexHistory(34);
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "silent"};
    useFake(fake);
    UsageStore store{environment};
    refresh(store);
    expectBadge(store.states()[1], "Local history", "Observed from local history");
    EXPECT_EQ(remainsInTheEnd(fake.processId()), "");
}

} // namespace tallyfox::test
