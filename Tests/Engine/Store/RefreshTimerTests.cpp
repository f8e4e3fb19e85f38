#include "Engine/Store/StoreFixture.h"
#include "Tallyfox/Engine/Store/RefreshTimer.h"

#include <limits>
#include <thread>

namespace tallyfox::test {

namespace {

using namespace std::chrono_literals;

class RefreshIntervalTest : public StoreTest { };

std::chrono::steady_clock::duration sinceBegin(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::steady_clock::now() - begin;
}

} // namespace

TEST(RefreshTimer, firesRepeatedlyAndNeverEarly)
{
    const auto begin = std::chrono::steady_clock::now();
    std::vector<std::chrono::steady_clock::duration> firings;
    RefreshTimer timer{[&] { firings.push_back(sinceBegin(begin)); }};
    timer.arm(60ms);
    ASSERT_TRUE(spinUntil([&] { return firings.size() == 3; }));
    EXPECT_GE(firings[0], 60ms);
    EXPECT_GE(firings[1], 120ms);
    EXPECT_GE(firings[2], 180ms);
}

TEST(RefreshTimer, intervalLongerThanASingleWaitIsKept)
{
    const auto begin = std::chrono::steady_clock::now();
    std::vector<std::chrono::steady_clock::duration> firings;
    RefreshTimer timer{[&] { firings.push_back(sinceBegin(begin)); }, 7ms};
    timer.arm(100ms);
    ASSERT_TRUE(spinUntil([&] { return firings.size() == 2; }));
    EXPECT_GE(firings[0], 100ms);
    EXPECT_GE(firings[1], 200ms);
}

TEST(RefreshTimer, rearmingReplacesTheInterval)
{
    int firings = 0;
    RefreshTimer timer{[&] { ++firings; }};
    timer.arm(30ms);
    timer.arm(1h);
    spinFor(150ms);
    EXPECT_EQ(firings, 0);
    timer.arm(10ms);
    EXPECT_TRUE(spinUntil([&] { return firings == 1; }));
}

TEST(RefreshTimer, firingsMissedByABusyThreadAreSkipped)
{
    int firings = 0;
    RefreshTimer timer{[&] { ++firings; }};
    timer.arm(200ms);
    std::this_thread::sleep_for(1100ms); // five intervals
    spinFor(50ms);
    EXPECT_GE(firings, 1);
    EXPECT_LE(firings, 2) << "one for all that were missed; the next one may be due already";
}

TEST(RefreshTimer, longestIntervalDoesNotFire)
{
    int firings = 0;
    RefreshTimer timer{[&] { ++firings; }};
    timer.arm(std::chrono::milliseconds::max());
    spinFor(100ms);
    EXPECT_EQ(firings, 0);
}

TEST_F(RefreshIntervalTest, zeroAndNegativeMinutesMeanOneMinute)
{
    UsageStore store{environment};
    for (const std::int64_t minutes : {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
        store.setRefreshInterval(minutes);
        EXPECT_EQ(store.refreshInterval(), 60s) << minutes;
    }
    store.setRefreshInterval(15);
    EXPECT_EQ(store.refreshInterval(), 900s);
}

TEST_F(RefreshIntervalTest, armingDoesNotRefresh)
{
    UsageStore store{environment};
    const Publications published{store};
    store.setRefreshInterval(1);
    spinFor(100ms);
    EXPECT_TRUE(published.list.empty());
}

TEST_F(RefreshIntervalTest, veryLongIntervalsThatFitAreKeptAndDoNotFireEarly)
{
    UsageStore store{environment};
    const Publications published{store};
    constexpr std::int64_t longest = std::numeric_limits<std::int64_t>::max() / 60;
    for (const std::int64_t minutes : {std::int64_t{35'792}, std::int64_t{71'583}, longest}) { // about 2^31, 2^32 ms
        store.setRefreshInterval(minutes);
        EXPECT_EQ(store.refreshInterval(), std::chrono::seconds{minutes * 60});
        spinFor(50ms);
    }
    EXPECT_TRUE(published.list.empty());
}

TEST_F(RefreshIntervalTest, intervalWhoseSecondsOverflowEndsTheProgram)
{
    EXPECT_EXIT(
        {
            UsageStore store{environment};
            store.setRefreshInterval(std::numeric_limits<std::int64_t>::max() / 60 + 1);
        },
        testing::ExitedWithCode(1), "tallyfox: stopped: the refresh interval has more seconds than 64 bits hold\n$");
}

TEST_F(RefreshIntervalTest, firingRefreshesTheStoreAfterOneMinute)
{
    EXPECT_EQ(environment.minute, 60s);
    environment.minute = 300ms;
    UsageStore store{environment};
    const auto begin = std::chrono::steady_clock::now();
    store.setRefreshInterval(0);
    while (store.lastUpdated() == std::nullopt && sinceBegin(begin) < 10s)
        spinFor(10ms);
    EXPECT_GE(sinceBegin(begin), 300ms);
    EXPECT_EQ(store.lastUpdated(), now);
}

} // namespace tallyfox::test
