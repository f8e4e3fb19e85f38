#include "Support/Agent/FakeStatusNotifierWatcher.h"
#include "Support/Agent/PrivateBus.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/StatusItem/StatusIconPainter.h"
#include "Tallyfox/Agent/StatusItem/StatusItem.h"
#include "Tallyfox/Agent/StatusItem/StatusMenu.h"
#include "Tallyfox/Agent/StatusItem/StatusNotifierItem.h"

#include <QDBusPendingReply>
#include <QDBusVariant>
#include <gmock/gmock.h>

#include <limits>
#include <memory>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;
using Manner = FakeStatusNotifierWatcher::Manner;

TEST(StatusItemContent, withoutAPercentageThereIsNoShortText)
{
    EXPECT_EQ(StatusItemContent{}.shortText(), QString{});
    EXPECT_EQ(StatusItemContent{}.fullText(), QStringLiteral("Tallyfox"));
}

TEST(StatusItemContent, percentageFollowsOneSpace)
{
    const auto expectTexts = [](std::int64_t percent, const QString& shortText, const QString& fullText) {
        EXPECT_EQ(StatusItemContent{percent}.shortText(), shortText);
        EXPECT_EQ(StatusItemContent{percent}.fullText(), fullText);
    };
    expectTexts(42, QStringLiteral(" 42%"), QStringLiteral("Tallyfox, 42 percent used"));
    expectTexts(0, QStringLiteral(" 0%"), QStringLiteral("Tallyfox, 0 percent used"));
    expectTexts(100, QStringLiteral(" 100%"), QStringLiteral("Tallyfox, 100 percent used"));
}

TEST(StatusItemContent, numberIsNeitherPaddedNorClamped)
{
    EXPECT_EQ(StatusItemContent{-3}.shortText(), QStringLiteral(" -3%"));
    EXPECT_EQ(StatusItemContent{1234}.shortText(), QStringLiteral(" 1234%"));
    EXPECT_EQ(StatusItemContent{std::numeric_limits<std::int64_t>::min()}.shortText(),
              QStringLiteral(" -9223372036854775808%"));
}

struct StatusItemTest : testing::Test {
    void start(std::chrono::milliseconds grace, std::optional<QDBusConnection> connection = std::nullopt)
    {
        item = makeStatusItem(QStringLiteral("org.tallyfox.tallyfox"), connection.value_or(itemBus), grace);
        QObject::connect(item.get(), &StatusItem::unavailable, item.get(), [this] { ++reports; });
        QObject::connect(item.get(), &StatusItem::shown, item.get(), [this] { ++showings; });
        QObject::connect(item.get(), &StatusItem::activated, item.get(),
                         [this](std::optional<QPoint> position) { clicks.push_back(position); });
    }
    void startWatcher(Manner manner = Manner::takesItems)
    {
        watcher = std::make_unique<FakeStatusNotifierWatcher>(bus.connect(), manner);
    }
    /// What a panel that shows the item asks for.
    StatusNotifierPixmaps readPicture()
    {
        QDBusMessage call =
            QDBusMessage::createMethodCall(itemBus.baseService(), QStringLiteral("/StatusNotifierItem"),
                                           QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
        call << QStringLiteral("org.kde.StatusNotifierItem") << QStringLiteral("IconPixmap");
        const QDBusPendingReply<QDBusVariant> reply = panelBus.asyncCall(call);
        EXPECT_TRUE(spinUntil([&] { return reply.isFinished(); }));
        return qdbus_cast<StatusNotifierPixmaps>(reply.value().variant());
    }
    static StatusNotifierPixmap picture(const char* number)
    {
        return statusNotifierPixmap(StatusIconPainter::image(QLatin1String{number}, 16));
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
    int reports = 0;
    int showings = 0;
    std::vector<std::optional<QPoint>> clicks;
    std::unique_ptr<StatusItem> item;
};

TEST_F(StatusItemTest, withoutABusItIsReportedUnavailableOnce)
{
    start(10ms, QDBusConnection{QStringLiteral("never opened")});
    item->setContent({.percent = 42});
    EXPECT_TRUE(spinUntil([&] { return reports == 1; }));
    spinFor(50ms);
    EXPECT_EQ(reports, 1);
}

TEST_F(StatusItemTest, withoutAPanelItIsReportedUnavailableOnceAndStillRegistersLater)
{
    start(10ms);
    ASSERT_TRUE(spinUntil([&] { return reports == 1; }));
    for (int life = 0; life < 3; ++life) {
        startWatcher();
        EXPECT_TRUE(spinUntil([&] { return watcher->registered().size() == 1; }));
        watcher.reset();
        spinFor(20ms);
    }
    EXPECT_EQ(reports, 1);
}

TEST_F(StatusItemTest, panelWithinTheGraceIsNeverReportedMissing)
{
    start(500ms);
    startWatcher();
    ASSERT_TRUE(spinUntil([&] { return watcher->registered().size() == 1; }));
    EXPECT_EQ(showings, 0);
    readPicture();
    EXPECT_TRUE(spinUntil([&] { return showings == 1; }));
    readPicture();
    watcher.reset();
    spinFor(1s);
    EXPECT_EQ(showings, 1);
    EXPECT_EQ(reports, 0) << "a crashed panel restarts";
}

TEST_F(StatusItemTest, acceptedItemThatNobodyReadsIsReportedUnavailable)
{
    startWatcher();
    start(100ms);
    EXPECT_TRUE(spinUntil([&] { return reports == 1; }));
    EXPECT_EQ(showings, 0);
    readPicture();
    spinFor(200ms);
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(showings, 1);
}

TEST_F(StatusItemTest, itemThatIsReadAndThenDroppedIsReportedUnavailable)
{
    startWatcher();
    start(500ms);
    ASSERT_TRUE(spinUntil([&] { return watcher->hostQuestions() == 1; }));
    readPicture();
    spinFor(50ms);
    EXPECT_EQ(reports, 0);
    watcher->drop(itemBus.baseService());
    EXPECT_TRUE(spinUntil([&] { return reports == 1; }));
}

TEST_F(StatusItemTest, panelThatReadsTheItemOfASilentWatcherShowsIt)
{
    startWatcher(Manner::isSilent);
    start(10ms);
    readPicture();
    watcher.reset();
    spinFor(100ms);
    EXPECT_EQ(reports, 0);
}

TEST_F(StatusItemTest, panelThatShowsTheLabelGetsTheSymbol)
{
    QDBusConnection shell = bus.connect();
    ASSERT_TRUE(shell.registerService(QStringLiteral("org.gnome.Shell")));
    watcher = std::make_unique<FakeStatusNotifierWatcher>(shell);
    start(1min);
    item->setContent({.percent = 42});
    EXPECT_TRUE(spinUntil([&] { return readPicture().value(0) == picture(""); }));
    watcher.reset();
    startWatcher();
    EXPECT_TRUE(spinUntil([&] { return readPicture().value(0) == picture("42"); })) << "another panel has taken over";
}

TEST_F(StatusItemTest, panelBesideGnomesShellGetsTheNumber)
{
    QDBusConnection shell = bus.connect();
    ASSERT_TRUE(shell.registerService(QStringLiteral("org.gnome.Shell")));
    startWatcher();
    start(1min);
    item->setContent({.percent = 42});
    ASSERT_TRUE(spinUntil([&] { return watcher->hostQuestions() == 1; }));
    spinFor(100ms);
    EXPECT_EQ(readPicture().value(0), picture("42"));
}

TEST_F(StatusItemTest, choiceInTheMenuIsReported)
{
    start(1min);
    std::vector<StatusMenuAction> choices;
    QObject::connect(item.get(), &StatusItem::chosen, item.get(),
                     [&](StatusMenuAction action) { choices.push_back(action); });
    item->setMenu({.figures = [](bool /*isOpened*/) { return QStringList{QStringLiteral("42% used")}; }});
    QDBusMessage call = QDBusMessage::createMethodCall(
        itemBus.baseService(), StatusMenu::path(), QStringLiteral("com.canonical.dbusmenu"), QStringLiteral("Event"));
    call << 4 << QStringLiteral("clicked") << QVariant::fromValue(QDBusVariant{0}) << 0U;
    panelBus.send(call);
    EXPECT_TRUE(spinUntil([&] { return !choices.empty(); }));
    EXPECT_THAT(choices, testing::ElementsAre(StatusMenuAction::settings));
}

TEST_F(StatusItemTest, silentPanelLeavesTheAvailabilityOpen)
{
    startWatcher(Manner::isSilent);
    start(10ms);
    spinFor(300ms);
    EXPECT_EQ(reports, 0);
    watcher.reset();
    EXPECT_TRUE(spinUntil([&] { return reports == 1; }));
}

TEST_F(StatusItemTest, refusingPanelCountsAsNone)
{
    startWatcher(Manner::refuses);
    start(10ms);
    EXPECT_TRUE(spinUntil([&] { return reports == 1; }));
}

TEST_F(StatusItemTest, clickReportsItsPositionUnlessThePanelSendsZeros)
{
    start(1min);
    click(100, 20);
    click(0, 0);
    ASSERT_TRUE(spinUntil([&] { return clicks.size() == 2; }));
    EXPECT_EQ(clicks[0], (QPoint{100, 20}));
    EXPECT_EQ(clicks[1], std::nullopt);
}

TEST_F(StatusItemTest, itemIsDestroyedWithAPendingClick)
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
