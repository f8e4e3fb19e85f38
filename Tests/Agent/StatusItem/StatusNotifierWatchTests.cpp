#include "Support/Agent/FakeStatusNotifierWatcher.h"
#include "Support/Agent/PrivateBus.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/StatusItem/StatusNotifierWatch.h"

#include <gmock/gmock.h>

#include <memory>
#include <vector>

namespace tallyfox::test {
namespace {

using Manner = FakeStatusNotifierWatcher::Manner;
using testing::ElementsAre;
using testing::IsEmpty;

struct StatusNotifierWatchTest : testing::Test {
    void start()
    {
        watch = std::make_unique<StatusNotifierWatch>(itemBus);
    }
    void startWatcher(Manner manner = Manner::takesItems)
    {
        watcher.reset();
        watcher = std::make_unique<FakeStatusNotifierWatcher>(bus.connect(), manner);
    }
    bool becomes(StatusNotifierHost host)
    {
        return spinUntil([&] { return watch->host() == host; });
    }

    PrivateBus bus;
    QDBusConnection itemBus = bus.connect();
    std::unique_ptr<FakeStatusNotifierWatcher> watcher;
    std::unique_ptr<StatusNotifierWatch> watch;
};

TEST_F(StatusNotifierWatchTest, withoutABusNoHostIsExpected)
{
    const StatusNotifierWatch alone{QDBusConnection{QStringLiteral("never opened")}};
    EXPECT_EQ(alone.host(), StatusNotifierHost::absent);
}

TEST_F(StatusNotifierWatchTest, withoutAWatcherTheHostIsAbsent)
{
    start();
    EXPECT_EQ(watch->host(), StatusNotifierHost::unknown);
    EXPECT_TRUE(becomes(StatusNotifierHost::absent));
}

TEST_F(StatusNotifierWatchTest, runningWatcherIsGivenTheConnection)
{
    startWatcher();
    start();
    ASSERT_TRUE(becomes(StatusNotifierHost::present));
    EXPECT_THAT(watcher->registered(), ElementsAre(itemBus.baseService()));
    EXPECT_THAT(watcher->wrongCalls(), IsEmpty());
}

TEST_F(StatusNotifierWatchTest, watcherThatStartsLaterIsGivenTheConnection)
{
    start();
    ASSERT_TRUE(becomes(StatusNotifierHost::absent));
    startWatcher();
    ASSERT_TRUE(becomes(StatusNotifierHost::present));
    EXPECT_THAT(watcher->registered(), ElementsAre(itemBus.baseService()));
}

TEST_F(StatusNotifierWatchTest, eachOfTwentyWatchersIsCalledOnce)
{
    start();
    for (int life = 0; life < 20; ++life) {
        startWatcher();
        ASSERT_TRUE(becomes(StatusNotifierHost::present)) << "start " << life;
        spinFor(std::chrono::milliseconds{5});
        EXPECT_THAT(watcher->registered(), ElementsAre(itemBus.baseService()));
        EXPECT_EQ(watcher->registrationCalls(), 1);
        watcher.reset();
        ASSERT_TRUE(becomes(StatusNotifierHost::absent)) << "after start " << life;
    }
}

TEST_F(StatusNotifierWatchTest, refusalIsFinal)
{
    startWatcher(Manner::refuses);
    start();
    ASSERT_TRUE(becomes(StatusNotifierHost::refusing));
    spinFor(std::chrono::milliseconds{1500});
    EXPECT_EQ(watcher->registrationCalls(), 1);
}

TEST_F(StatusNotifierWatchTest, unreadyWatcherIsCalledAgain)
{
    startWatcher(Manner::knowsNoCalls);
    start();
    ASSERT_TRUE(spinUntil([&] { return watcher->registrationCalls() == 1; }));
    watcher->setManner(Manner::takesItems);
    ASSERT_TRUE(becomes(StatusNotifierHost::present));
    EXPECT_EQ(watcher->registrationCalls(), 2);
    EXPECT_THAT(watcher->registered(), ElementsAre(itemBus.baseService()));
}

TEST_F(StatusNotifierWatchTest, watcherThatNeverGetsReadyIsCalledFourTimes)
{
    startWatcher(Manner::knowsNoCalls);
    start();
    ASSERT_TRUE(becomes(StatusNotifierHost::refusing));
    spinFor(std::chrono::milliseconds{1500});
    EXPECT_EQ(watcher->registrationCalls(), 4);
}

TEST_F(StatusNotifierWatchTest, silentWatcherKeepsTheHostUnknownUntilTheNextOneStarts)
{
    startWatcher(Manner::isSilent);
    start();
    ASSERT_TRUE(spinUntil([&] { return watcher->registrationCalls() == 1; }));
    spinFor(std::chrono::milliseconds{200});
    EXPECT_EQ(watch->host(), StatusNotifierHost::unknown);
    EXPECT_EQ(watcher->registrationCalls(), 1);
    startWatcher();
    EXPECT_TRUE(becomes(StatusNotifierHost::present));
}

TEST_F(StatusNotifierWatchTest, repliesOfWrongTypesAreIgnored)
{
    startWatcher(Manner::answersNonsense);
    start();
    EXPECT_TRUE(becomes(StatusNotifierHost::present));
    EXPECT_EQ(watcher->registrationCalls(), 1);
}

TEST_F(StatusNotifierWatchTest, watcherWithoutAPanelIsNoHostUntilThePanelStarts)
{
    startWatcher();
    watcher->setHost(false);
    start();
    ASSERT_TRUE(becomes(StatusNotifierHost::absent));
    ASSERT_TRUE(spinUntil([&] { return watcher->registrationCalls() == 1; }));
    watcher->setHost(true);
    ASSERT_TRUE(becomes(StatusNotifierHost::present));
    watcher->setHost(false);
    ASSERT_TRUE(becomes(StatusNotifierHost::absent));
    EXPECT_EQ(watcher->registrationCalls(), 1);
}

TEST_F(StatusNotifierWatchTest, droppedItemIsRefusedUntilItIsListedAgain)
{
    startWatcher();
    start();
    ASSERT_TRUE(becomes(StatusNotifierHost::present));
    watcher->drop(itemBus.baseService());
    EXPECT_TRUE(becomes(StatusNotifierHost::refusing));
    watcher->add(itemBus.baseService());
    EXPECT_TRUE(becomes(StatusNotifierHost::present));
    EXPECT_EQ(watcher->registrationCalls(), 1);
    EXPECT_THAT(watcher->wrongCalls(), IsEmpty());
}

TEST_F(StatusNotifierWatchTest, itemsOfOthersAreNotOurs)
{
    startWatcher();
    start();
    ASSERT_TRUE(becomes(StatusNotifierHost::present));
    const auto questions = watcher->hostQuestions();
    watcher->add(itemBus.baseService() + QStringLiteral("7")); // begins with our name
    watcher->add(QStringLiteral(":1.999"));
    spinFor(std::chrono::milliseconds{50});
    EXPECT_EQ(watcher->hostQuestions(), questions);
    watcher->drop(itemBus.baseService());
    EXPECT_TRUE(becomes(StatusNotifierHost::refusing)) << "the list still has one that begins with our name";
}

TEST_F(StatusNotifierWatchTest, flagCountsBeforeTheList)
{
    startWatcher();
    start();
    ASSERT_TRUE(becomes(StatusNotifierHost::present));
    watcher->setHost(false);
    watcher->drop(itemBus.baseService());
    ASSERT_TRUE(becomes(StatusNotifierHost::absent));
    spinFor(std::chrono::milliseconds{50});
    EXPECT_EQ(watch->host(), StatusNotifierHost::absent) << "an X11 tray may show the icon then";
}

TEST_F(StatusNotifierWatchTest, floodOfSignalsCausesFewCallsAndTheLatestResult)
{
    constexpr int signalCount = 501;
    startWatcher();
    start();
    ASSERT_TRUE(becomes(StatusNotifierHost::present));
    for (int number = 0; number < signalCount; ++number)
        watcher->setHost(number % 2 == 1);
    ASSERT_TRUE(becomes(StatusNotifierHost::absent));
    EXPECT_LT(watcher->hostQuestions(), signalCount / 2);
}

TEST_F(StatusNotifierWatchTest, signalsForgedByAnotherPeerAreIgnored)
{
    startWatcher();
    start();
    ASSERT_TRUE(becomes(StatusNotifierHost::present));
    const QDBusConnection peer = bus.connect();
    QDBusMessage forged =
        QDBusMessage::createTargetedSignal(itemBus.baseService(), QStringLiteral("/org/freedesktop/DBus"),
                                           QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"));
    forged << QStringLiteral("org.kde.StatusNotifierWatcher") << QString{} << peer.baseService();
    peer.send(forged);
    spinFor(std::chrono::milliseconds{100});
    EXPECT_EQ(watch->host(), StatusNotifierHost::present);
    EXPECT_EQ(watcher->registrationCalls(), 1);
}

TEST_F(StatusNotifierWatchTest, lostBusMakesTheHostAbsent)
{
    startWatcher();
    start();
    ASSERT_TRUE(becomes(StatusNotifierHost::present));
    bus.kill();
    EXPECT_TRUE(becomes(StatusNotifierHost::absent));
}

TEST_F(StatusNotifierWatchTest, watchIsDestroyedWithAPendingCall)
{
    startWatcher(Manner::isSilent);
    start();
    ASSERT_TRUE(spinUntil([&] { return watcher->registrationCalls() == 1; }));
    watch.reset();
    startWatcher();
    spinFor(std::chrono::milliseconds{50});
    EXPECT_EQ(watcher->registrationCalls(), 0);
}

} // namespace
} // namespace tallyfox::test
