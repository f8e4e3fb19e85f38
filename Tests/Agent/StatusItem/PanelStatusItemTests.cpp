#include "Support/Agent/FakeStatusNotifierWatcher.h"
#include "Support/Agent/PrivateBus.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/StatusItem/PanelStatusItem.h"

#include <gmock/gmock.h>

#include <memory>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;
using Manner = FakeStatusNotifierWatcher::Manner;

struct PanelStatusItemTest : testing::Test {
    void start(std::chrono::milliseconds grace, std::optional<QDBusConnection> connection = std::nullopt)
    {
        item = std::make_unique<PanelStatusItem>(QStringLiteral("org.tallyfox.tallyfox"),
                                                 StatusItemContent{{}, QStringLiteral("Tallyfox")},
                                                 connection.value_or(itemBus), grace);
        QObject::connect(item.get(), &StatusItem::isUnavailable, item.get(), [this] { ++complaints; });
        QObject::connect(item.get(), &StatusItem::activated, item.get(),
                         [this](std::optional<QPoint> position) { clicks.push_back(position); });
    }
    void startWatcher(Manner manner = Manner::takesItems)
    {
        watcher = std::make_unique<FakeStatusNotifierWatcher>(bus.connect(), manner);
    }
    void click(int x, int y)
    {
        QDBusMessage call =
            QDBusMessage::createMethodCall(itemBus.baseService(), QStringLiteral("/StatusNotifierItem"),
                                           QStringLiteral("org.kde.StatusNotifierItem"), QStringLiteral("Activate"));
        call << x << y;
        panelBus.send(call);
    }

    PrivateBus bus;
    QDBusConnection itemBus = bus.connect();
    QDBusConnection panelBus = bus.connect();
    std::unique_ptr<FakeStatusNotifierWatcher> watcher;
    int complaints = 0;
    std::vector<std::optional<QPoint>> clicks;
    std::unique_ptr<PanelStatusItem> item;
};

TEST_F(PanelStatusItemTest, withoutABusItSaysOnceThatItIsUnavailable)
{
    start(10ms, QDBusConnection{QStringLiteral("never opened")});
    item->setContent({QStringLiteral(" 42%"), QStringLiteral("Tallyfox, 42 percent used")});
    EXPECT_TRUE(spinUntil([&] { return complaints == 1; }));
    spinFor(50ms);
    EXPECT_EQ(complaints, 1);
}

TEST_F(PanelStatusItemTest, withoutAPanelItSaysSoOnceAndStaysReady)
{
    start(10ms);
    ASSERT_TRUE(spinUntil([&] { return complaints == 1; }));
    for (int life = 0; life < 3; ++life) {
        startWatcher();
        EXPECT_TRUE(spinUntil([&] { return watcher->registered().size() == 1; }));
        watcher.reset();
        spinFor(20ms);
    }
    EXPECT_EQ(complaints, 1);
}

TEST_F(PanelStatusItemTest, panelThatComesInTimeLeavesNothingToSay)
{
    start(2s);
    startWatcher();
    ASSERT_TRUE(spinUntil([&] { return watcher->registered().size() == 1; }));
    spinFor(50ms);
    watcher.reset();
    spinFor(2500ms);
    EXPECT_EQ(complaints, 0) << "a panel that has crashed comes back";
}

TEST_F(PanelStatusItemTest, panelThatDoesNotAnswerIsNoCertainty)
{
    startWatcher(Manner::isSilent);
    start(10ms);
    spinFor(300ms);
    EXPECT_EQ(complaints, 0);
    watcher.reset();
    EXPECT_TRUE(spinUntil([&] { return complaints == 1; }));
}

TEST_F(PanelStatusItemTest, panelThatRefusesIsNone)
{
    startWatcher(Manner::refuses);
    start(10ms);
    EXPECT_TRUE(spinUntil([&] { return complaints == 1; }));
}

TEST_F(PanelStatusItemTest, clickTellsItsPlaceUnlessThePanelSaysNone)
{
    start(1min);
    click(100, 20);
    click(0, 0);
    ASSERT_TRUE(spinUntil([&] { return clicks.size() == 2; }));
    EXPECT_EQ(clicks[0], (QPoint{100, 20}));
    EXPECT_EQ(clicks[1], std::nullopt);
}

TEST_F(PanelStatusItemTest, endsWithItsPanelAsking)
{
    startWatcher();
    start(1min);
    click(100, 20);
    item.reset();
    spinFor(50ms);
    EXPECT_TRUE(clicks.empty());
}

} // namespace
} // namespace tallyfox::test
