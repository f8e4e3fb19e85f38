#include "Support/Agent/MenuHost.h"
#include "Support/Agent/PrivateBus.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/StatusItem/StatusMenu.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QElapsedTimer>
#include <QTimer>
#include <gmock/gmock.h>

#include <algorithm>
#include <malloc.h>
#include <memory>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using Labels = MenuHost::Labels;

constexpr int percentId = 100; // the first of the lines
constexpr int separatorId = 1;
constexpr int openId = 2;
constexpr int refreshId = 3;
constexpr int settingsId = 4;
constexpr int keepAwakeId = 5;

QList<StatusMenuEvent> clicks(std::initializer_list<int> ids)
{
    QList<StatusMenuEvent> events;
    for (const int id : ids)
        events += StatusMenuEvent{id, QStringLiteral("clicked"), QDBusVariant{QString{}}, 0};
    return events;
}

struct StatusMenuTest : testing::Test {
    StatusMenuTest()
    {
        QObject::connect(&menu, &StatusMenu::chosen, &menu,
                         [this](StatusMenuAction action) { choices.push_back(action); });
        publish({"42% used", "Claude: 1 token"});
    }

    void publish(const QStringList& figures, bool keepsAwake = false)
    {
        menu.setContent({.figures =
                             [this, figures](bool /*isOpened*/) {
                                 ++timesMade;
                                 return figures;
                             },
                         .keepsAwake = keepsAwake});
    }
    void publish(std::initializer_list<const char*> figures, bool keepsAwake = false)
    {
        QStringList lines;
        for (const char* line : figures)
            lines += QLatin1String{line};
        publish(lines, keepsAwake);
    }
    std::unique_ptr<MenuHost> makeHost()
    {
        return std::make_unique<MenuHost>(bus.connect(), menuBus.baseService());
    }

    PrivateBus bus;
    QDBusConnection menuBus = bus.connect();
    StatusMenu menu{menuBus};
    std::unique_ptr<MenuHost> host = makeHost();
    std::vector<StatusMenuAction> choices;
    int timesMade = 0;
};

TEST_F(StatusMenuTest, layoutHasTheFiguresAndTheActions)
{
    const StatusMenuLayout layout = host->layout();
    EXPECT_EQ(layout.entry.id, 0);
    EXPECT_EQ(layout.entry.properties.value(QStringLiteral("children-display")), QStringLiteral("submenu"));
    std::vector<int> ids;
    for (const StatusMenuEntry& entry : layout.children)
        ids.push_back(entry.id);
    EXPECT_THAT(ids, ElementsAre(percentId, percentId + 1, separatorId, openId, refreshId, settingsId, keepAwakeId));
    EXPECT_EQ(host->labels(),
              (Labels{{percentId, "42% used"},
                      {percentId + 1, "Claude: 1 token"},
                      {openId, "Open Tallyfox"},
                      {refreshId, "Refresh"},
                      {settingsId, "Settings…"},
                      {keepAwakeId, "Keep Mac Awake"}}));
    EXPECT_EQ(host->property(separatorId, "type"), QStringLiteral("separator"));
    EXPECT_EQ(host->property(percentId, "enabled"), false);
}

TEST_F(StatusMenuTest, layoutIsLimitedToTheWantedDepthAndProperties)
{
    EXPECT_THAT(host->layout(0, 0).children, IsEmpty());
    EXPECT_EQ(host->layout(0, 1).children.size(), 7);
    EXPECT_EQ(host->layout(openId).entry.properties.value(QStringLiteral("label")), QStringLiteral("Open Tallyfox"));
    EXPECT_THAT(host->layout(openId).children, IsEmpty());
    const QStringList names{QStringLiteral("enabled"), QStringLiteral("no such property")};
    EXPECT_EQ(host->layout(0, -1, names).children.first().properties.keys(), QStringList{QStringLiteral("enabled")});
}

TEST_F(StatusMenuTest, propertiesOfTheInterfaceHaveTheirTypes)
{
    const QDBusMessage reply = host->call("GetAll", {MenuHost::interface}, MenuHost::properties);
    const auto properties = qdbus_cast<QVariantMap>(reply.arguments().value(0));
    EXPECT_EQ(properties,
              (QVariantMap{{QStringLiteral("Version"), 3U},
                           {QStringLiteral("Status"), QStringLiteral("normal")},
                           {QStringLiteral("TextDirection"), QStringLiteral("ltr")},
                           {QStringLiteral("IconThemePath"), QStringList{}}}));
}

TEST_F(StatusMenuTest, propertiesOfAGroupAreThoseOfTheKnownIds)
{
    const auto ask = [this](const QList<int>& ids) {
        const QDBusMessage reply = host->call("GetGroupProperties", {QVariant::fromValue(ids), QStringList{}});
        EXPECT_EQ(reply.signature().toStdString(), "a(ia{sv})");
        std::vector<int> found;
        for (const StatusMenuEntry& entry : qdbus_cast<QList<StatusMenuEntry>>(reply.arguments().value(0)))
            found.push_back(entry.id);
        return found;
    };
    EXPECT_THAT(ask({openId, 77, percentId, openId, -1}), ElementsAre(percentId, openId));
    EXPECT_THAT(ask({0}), ElementsAre(0));
    EXPECT_EQ(ask({}).size(), 8U) << "all entries";
    EXPECT_THAT(ask({77}), IsEmpty());
}

TEST_F(StatusMenuTest, linesFollowPublications)
{
    host->layout();
    publish({"43% used", "Claude: 1 token"});
    ASSERT_TRUE(spinUntil([&] { return host->updates.size() == 1; }));
    ASSERT_EQ(host->updates[0].size(), 1) << "the other line is unchanged";
    EXPECT_EQ(host->updates[0][0].id, percentId);
    EXPECT_EQ(host->updates[0][0].properties.value(QStringLiteral("label")), QStringLiteral("43% used"));
    EXPECT_EQ(host->labels().at(percentId), "43% used");
}

TEST_F(StatusMenuTest, emptyLineIsHiddenUntilItHasText)
{
    publish({"", "Claude: 1 token"});
    EXPECT_FALSE(host->labels().contains(percentId));
    publish({"43% used", "Claude: 1 token"});
    ASSERT_TRUE(spinUntil([&] { return host->updates.size() == 1; }));
    EXPECT_EQ(host->updates[0][0].properties.value(QStringLiteral("visible")), true);
    EXPECT_EQ(host->labels().at(percentId), "43% used");
}

TEST_F(StatusMenuTest, checkMarkFollowsKeepAwake)
{
    EXPECT_EQ(host->property(keepAwakeId, "toggle-type"), QStringLiteral("checkmark"));
    EXPECT_EQ(host->property(keepAwakeId, "toggle-state"), 0);
    publish({"42% used", "Claude: 1 token"}, true);
    ASSERT_TRUE(spinUntil([&] { return host->updates.size() == 1; }));
    EXPECT_EQ(host->updates[0][0].id, keepAwakeId);
    EXPECT_EQ(host->updates[0][0].properties.value(QStringLiteral("toggle-state")), 1);
    EXPECT_EQ(host->property(keepAwakeId, "toggle-state"), 1);
}

TEST_F(StatusMenuTest, sameContentIsNotSignalled)
{
    host->layout();
    publish({"42% used", "Claude: 1 token"});
    host->property(openId, "label"); // a reply comes after all signals before it
    EXPECT_THAT(host->updates, IsEmpty());
}

TEST_F(StatusMenuTest, figuresAreNotMadeBeforeAPanelAsks)
{
    publish({"43% used", "Claude: 1 token"});
    publish({"44% used", "Claude: 1 token"});
    EXPECT_EQ(host->call("Get", {MenuHost::interface, QStringLiteral("Version")}, MenuHost::properties).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(timesMade, 0);
    EXPECT_EQ(host->labels().at(percentId), "44% used");
    EXPECT_EQ(timesMade, 1);
}

TEST_F(StatusMenuTest, openingUpdatesLinesThatTimeHasChanged)
{
    QString line = QStringLiteral("Resets in 2 hr.");
    menu.setContent({.figures = [&line](bool /*isOpened*/) { return QStringList{line}; }});
    host->layout();
    line = QStringLiteral("Resets in 1 hr.");
    EXPECT_TRUE(host->call("AboutToShow", {0}).arguments().value(0).toBool());
    EXPECT_EQ(host->updates.size(), 1) << "before the reply";
    EXPECT_FALSE(host->call("AboutToShow", {0}).arguments().value(0).toBool());
    EXPECT_FALSE(host->call("AboutToShow", {openId}).arguments().value(0).toBool());
    line = QStringLiteral("Resets in 59 min.");
    spinFor(1100ms);
    const QDBusMessage reply = host->call("AboutToShowGroup", {QVariant::fromValue(QList<int>{77, 0, openId})});
    EXPECT_EQ(reply.signature().toStdString(), "aiai");
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList<int>{0});
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(1)), QList<int>{77});
    EXPECT_EQ(host->labels().at(percentId), "Resets in 59 min.");
}

QStringList openedOrNot(bool isOpened)
{
    return {isOpened ? QStringLiteral("opened") : QStringLiteral("unopened")};
}

TEST_F(StatusMenuTest, firstOpeningUpdatesLinesThatWereReadBefore)
{
    menu.setContent({.figures = openedOrNot});
    EXPECT_EQ(host->labels().at(percentId), "unopened");
    EXPECT_TRUE(host->call("AboutToShow", {0}).arguments().value(0).toBool());
    EXPECT_EQ(host->updates.size(), 1);
    EXPECT_EQ(host->labels().at(percentId), "opened");
    menu.setContent({.figures = openedOrNot});
    EXPECT_EQ(host->labels().at(percentId), "opened") << "after a publication, too";
}

TEST_F(StatusMenuTest, openingThatIsNotAnnouncedUpdatesTheLines)
{
    menu.setContent({.figures = openedOrNot});
    EXPECT_EQ(host->labels().at(percentId), "unopened");
    host->call("Event", {openId, QStringLiteral("opened"), QVariant::fromValue(QDBusVariant{0}), 0U});
    EXPECT_EQ(host->labels().at(percentId), "unopened") << "only the menu opens, not an entry";
    host->call("Event", {0, QStringLiteral("opened"), QVariant::fromValue(QDBusVariant{0}), 0U});
    EXPECT_EQ(host->updates.size(), 1);
    EXPECT_EQ(host->labels().at(percentId), "opened");
}

TEST_F(StatusMenuTest, clickChoosesTheAction)
{
    const auto event = [this](int id, const char* name) {
        return host->call("Event", {id, QLatin1String{name}, QVariant::fromValue(QDBusVariant{0}), 0U}).type();
    };
    for (const int id : {openId, refreshId, settingsId, keepAwakeId})
        EXPECT_EQ(event(id, "clicked"), QDBusMessage::ReplyMessage);
    EXPECT_THAT(choices,
                ElementsAre(StatusMenuAction::open, StatusMenuAction::refresh, StatusMenuAction::settings,
                            StatusMenuAction::keepAwake));
    choices.clear();
    for (const char* name : {"hovered", "opened", "closed", "x-other", ""})
        EXPECT_EQ(event(openId, name), QDBusMessage::ReplyMessage) << name;
    for (const int id : {0, separatorId, percentId})
        EXPECT_EQ(event(id, "clicked"), QDBusMessage::ReplyMessage) << id;
    EXPECT_THAT(choices, IsEmpty());
}

TEST_F(StatusMenuTest, groupOfEventsIsHandledAndUnknownIdsAreReturned)
{
    const QDBusMessage reply = host->call("EventGroup", {QVariant::fromValue(clicks({settingsId, 77, refreshId, -5}))});
    EXPECT_EQ(reply.signature().toStdString(), "ai");
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(0)), (QList<int>{77, -5}));
    EXPECT_THAT(choices, ElementsAre(StatusMenuAction::settings, StatusMenuAction::refresh));
}

TEST_F(StatusMenuTest, invalidCallsAreRefused)
{
    const QString text = QStringLiteral("text");
    const QVariant value = QVariant::fromValue(QDBusVariant{0});
    const QVariant tooManyIds = QVariant::fromValue(QList<int>(257, openId));
    const QStringList tooManyNames(257, QStringLiteral("label"));
    QList<StatusMenuEvent> tooManyClicks;
    for (int number = 0; number < 257; ++number)
        tooManyClicks += clicks({openId});
    const QDBusMessage replies[] = {
        host->call("GetLayout", {77, -1, QStringList{}}),
        host->call("GetLayout", {0, -2, QStringList{}}),
        host->call("GetLayout", {0, -1, tooManyNames}),
        host->call("GetLayout", {0, -1}),
        host->call("GetLayout", {text, -1, QStringList{}}),
        host->call("GetGroupProperties", {tooManyIds, QStringList{}}),
        host->call("GetGroupProperties", {QVariant::fromValue(QList<int>{openId}), tooManyNames}),
        host->call("GetGroupProperties", {QStringList{text}, QStringList{}}),
        host->call("GetProperty", {77, QStringLiteral("label")}),
        host->call("GetProperty", {openId, QStringLiteral("enabled")}),
        host->call("GetProperty", {openId}),
        host->call("Event", {77, QStringLiteral("clicked"), value, 0U}),
        host->call("Event", {openId, QStringLiteral("clicked"), value, 0}),
        host->call("Event", {openId, QStringLiteral("clicked"), 0, 0U}),
        host->call("EventGroup", {QVariant::fromValue(tooManyClicks)}),
        host->call("EventGroup", {tooManyIds}),
        host->call("AboutToShow", {77}),
        host->call("AboutToShow", {0U}),
        host->call("AboutToShowGroup", {tooManyIds}),
        host->call("ItemsPropertiesUpdated"),
        host->call("Quit"),
        host->call("Get", {MenuHost::interface, QStringLiteral("Entries")}, MenuHost::properties),
        host->call("Set", {MenuHost::interface, QStringLiteral("Version"), value}, MenuHost::properties),
        host->call("GetLayout", {0, -1, QStringList{}}, QStringLiteral("com.canonical.nomenu")),
    };
    int index = 0;
    for (const QDBusMessage& reply : replies)
        EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage) << index++;
    EXPECT_THAT(choices, IsEmpty());
    EXPECT_THAT(host->updates, IsEmpty());
    EXPECT_EQ(host->layout().children.size(), 7);
}

TEST_F(StatusMenuTest, callThatWantsNoReplyHasItsEffect)
{
    QDBusMessage call =
        host->message("Event", {refreshId, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant{0}), 0U});
    EXPECT_TRUE(bus.connect().send(call));
    EXPECT_TRUE(spinUntil([&] { return choices.size() == 1; }));
}

TEST_F(StatusMenuTest, twoPanelsAtOnceAreBothToldAndBothServed)
{
    const auto other = makeHost();
    EXPECT_EQ(host->labels(), other->labels());
    publish({"43% used", "Claude: 1 token"});
    EXPECT_TRUE(spinUntil([&] { return host->updates.size() == 1 && other->updates.size() == 1; }));
    EXPECT_EQ(other->labels().at(percentId), "43% used");
    EXPECT_EQ(timesMade, 2) << "once for each publication, not for each panel";
}

TEST_F(StatusMenuTest, panelThatDiesWhileTheMenuIsOpenLeavesNothingBehind)
{
    QDBusConnection dying = bus.connect();
    {
        const MenuHost other{dying, menuBus.baseService()};
        other.layout();
        other.call("Event", {0, QStringLiteral("opened"), QVariant::fromValue(QDBusVariant{0}), 0U});
        other.start(other.message("AboutToShow", {0}));
        other.start(other.message("GetLayout", {0, -1, QStringList{}}));
    }
    QDBusConnection::disconnectFromBus(dying.name());
    publish({"43% used", "Claude: 1 token"});
    EXPECT_EQ(host->labels().at(percentId), "43% used");
    EXPECT_THAT(choices, IsEmpty());
}

TEST_F(StatusMenuTest, floodIsAnsweredWithoutMakingTheMenuAnewOrLeakingMemory)
{
    const QDBusMessage calls[] = {
        host->message("AboutToShow", {0}),
        host->message("GetLayout", {0, -1, QStringList{}}),
        host->message("GetGroupProperties",
                      {QVariant::fromValue(QList<int>(256, openId)), QStringList(256, QStringLiteral("label"))}),
        host->message("GetLayout", {77, -1, QStringList{}}),
        host->message("AboutToShowGroup", {QVariant::fromValue(QList<int>(256, 0))}),
    };
    constexpr std::size_t kinds = std::size(calls);
    int turns = 0; // of the event loop, which serves everything else as well
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&turns] { ++turns; });
    timer.start(0ms);
    const auto flood = [&] {
        for (int round = 0; round < 100; ++round) {
            std::vector<QDBusPendingCall> pending; // no more than the bus allows a peer to wait for
            for (std::size_t number = 0; number < 100; ++number)
                pending.push_back(host->start(calls[number % kinds]));
            ASSERT_TRUE(spinUntil([&] {
                return std::ranges::all_of(pending, [](const QDBusPendingCall& call) { return call.isFinished(); });
            }));
            for (std::size_t index = 0; index < pending.size(); ++index)
                EXPECT_EQ(pending[index].isError(), index % kinds == 3);
        }
    };
    flood(); // fills the libraries' caches
    const std::size_t before = mallinfo2().uordblks;
    const int madeBefore = timesMade;
    turns = 0;
    QElapsedTimer time;
    time.start();
    flood();
    EXPECT_LE(timesMade - madeBefore, 1 + time.elapsed() / 1000);
    EXPECT_GE(turns, 100) << "once in each round at least";
    EXPECT_LT(mallinfo2().uordblks, before + 256 * 1024);
    EXPECT_THAT(host->updates, IsEmpty());
}

TEST_F(StatusMenuTest, menuSurvivesItsBus)
{
    host->layout();
    bus.kill();
    ASSERT_TRUE(spinUntil([&] { return !menuBus.isConnected(); }));
    publish({"43% used", "Claude: 1 token"});
    EXPECT_EQ(timesMade, 2);
}

} // namespace
} // namespace tallyfox::test
