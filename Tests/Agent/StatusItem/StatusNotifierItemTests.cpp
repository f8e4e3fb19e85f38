#include "Support/Agent/PrivateBus.h"
#include "Support/Agent/SignalRecorder.h"
#include "Support/Agent/StatusNotifierProperties.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/StatusItem/StatusIconPainter.h"
#include "Tallyfox/Agent/StatusItem/StatusMenu.h"
#include "Tallyfox/Agent/StatusItem/StatusNotifierItem.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <gmock/gmock.h>

#include <malloc.h>
#include <map>

namespace tallyfox::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const QString path = QStringLiteral("/StatusNotifierItem");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

/// The D-Bus signature of a value.
std::string signatureOf(const QVariant& value)
{
    if (value.metaType() == QMetaType::fromType<QDBusArgument>())
        return value.value<QDBusArgument>().currentSignature().toStdString();
    return QDBusMetaType::typeToSignature(value.metaType());
}

struct StatusNotifierItemTest : testing::Test {
    StatusNotifierItemTest()
    {
        item.setContent({.percent = 42});
        QObject::connect(&item, &StatusNotifierItem::activated, &item,
                         [this](QPoint position) { clicks.push_back(position); });
        for (const QString& interface : {itemInterface, propertiesInterface})
            EXPECT_TRUE(
                panel.connect(itemBus.baseService(), path, interface, {}, &signalRecorder, SLOT(record(QDBusMessage))));
    }

    QDBusMessage message(const QString& interface, const QString& member, const QVariantList& arguments) const
    {
        QDBusMessage call = QDBusMessage::createMethodCall(itemBus.baseService(), path, interface, member);
        call.setArguments(arguments);
        return call;
    }
    /// The reply to a call, while the item's event loop runs.
    QDBusMessage call(const QString& interface, const QString& member, const QVariantList& arguments = {})
    {
        const QDBusPendingCall pending = panel.asyncCall(message(interface, member, arguments));
        EXPECT_TRUE(spinUntil([&] { return pending.isFinished(); }));
        return pending.reply();
    }
    QDBusMessage callItem(const char* member, const QVariantList& arguments = {})
    {
        return call(itemInterface, QString::fromLatin1(member), arguments);
    }
    QVariant property(const char* name)
    {
        const QDBusMessage reply =
            call(propertiesInterface, QStringLiteral("Get"), {itemInterface, QString::fromLatin1(name)});
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }
    /// The signals that a change of the content causes. A call's reply comes after all signals before it.
    std::vector<std::string> signalsAfter(const StatusItemContent& content)
    {
        property("Id");
        signalRecorder.list.clear();
        item.setContent(content);
        property("Id");
        spinFor(std::chrono::milliseconds{5});
        return signalRecorder.list;
    }

    PrivateBus bus;
    QDBusConnection itemBus = bus.connect();
    QDBusConnection panel = bus.connect();
    StatusNotifierItem item{QStringLiteral("org.tallyfox.tallyfox"), itemBus};
    std::vector<QPoint> clicks;
    SignalRecorder signalRecorder;
};

TEST_F(StatusNotifierItemTest, propertiesHaveTheTypesThatPanelsRead)
{
    const QDBusMessage reply = call(propertiesInterface, QStringLiteral("GetAll"), {itemInterface});
    const QVariantMap properties = qdbus_cast<QVariantMap>(reply.arguments().value(0));
    std::map<std::string, std::string> signatures;
    for (const auto& [name, value] : properties.asKeyValueRange())
        signatures[name.toStdString()] = signatureOf(value);
    EXPECT_EQ(signatures, statusNotifierProperties);
}

TEST_F(StatusNotifierItemTest, propertiesDescribeTheItem)
{
    EXPECT_EQ(property("Category").toString(), QStringLiteral("ApplicationStatus"));
    EXPECT_EQ(property("Id").toString(), QStringLiteral("org.tallyfox.tallyfox"));
    EXPECT_EQ(property("Status").toString(), QStringLiteral("Active"));
    EXPECT_EQ(property("Title").toString(), QStringLiteral("Tallyfox, 42 percent used"));
    EXPECT_EQ(property("XAyatanaLabel").toString(), QStringLiteral(" 42%"));
    EXPECT_EQ(property("XAyatanaLabelGuide").toString(), QStringLiteral(" 100%"));
    EXPECT_EQ(property("IconName").toString(), QString{}) << "panels would prefer it to the pixmap with the number";
    EXPECT_FALSE(property("ItemIsMenu").toBool()) << "panels would open the menu on every button";
    EXPECT_EQ(property("Menu").value<QDBusObjectPath>().path(), StatusMenu::path());
    EXPECT_EQ(property("IconAccessibleDesc").toString(), QStringLiteral("Tallyfox, 42 percent used"));
    EXPECT_EQ(property("AttentionAccessibleDesc").toString(), QString{});
    const StatusNotifierToolTip expected{{}, {}, QStringLiteral("Tallyfox, 42 percent used"), {}};
    EXPECT_EQ(qdbus_cast<StatusNotifierToolTip>(property("ToolTip")), expected);
}

TEST_F(StatusNotifierItemTest, iconIsProvidedInAllSizes)
{
    const auto icon = qdbus_cast<StatusNotifierPixmaps>(property("IconPixmap"));
    ASSERT_EQ(icon.size(), qsizetype{StatusIconPainter::sides.size()});
    for (qsizetype index = 0; index < icon.size(); ++index) {
        const int side = StatusIconPainter::sides.at(static_cast<std::size_t>(index));
        EXPECT_EQ(icon[index], statusNotifierPixmap(StatusIconPainter::image(QStringLiteral("42"), side)));
        EXPECT_EQ(icon[index].argb.size(), side * side * 4);
    }
}

TEST_F(StatusNotifierItemTest, introspectionListsWhatPanelsUse)
{
    const QDBusMessage reply =
        call(QStringLiteral("org.freedesktop.DBus.Introspectable"), QStringLiteral("Introspect"));
    const std::string xml = reply.arguments().value(0).toString().toStdString();
    for (const char* part :
         {R"-(<property name="IconPixmap" type="a(iiay)" access="read">)-",
          R"-(<property name="ToolTip" type="(sa(iiay)ss)" access="read">)-",
          R"(<property name="Title" type="s" access="read"/>)", R"(<property name="Menu" type="o" access="read"/>)",
          R"(<method name="Activate">)", R"(<method name="SecondaryActivate">)", R"(<method name="ContextMenu">)",
          R"(<method name="Scroll">)", R"(<method name="ProvideXdgActivationToken">)", R"(<signal name="NewTitle">)",
          R"(<signal name="NewIcon">)", R"(<signal name="NewToolTip">)", R"(<signal name="NewStatus">)",
          R"(<signal name="XAyatanaNewLabel">)"})
        EXPECT_THAT(xml, testing::HasSubstr(part));
    EXPECT_THAT(xml, testing::Not(testing::HasSubstr("write")));
}

TEST_F(StatusNotifierItemTest, everyKindOfClickActivates)
{
    int x = 0;
    for (const char* member : {"Activate", "SecondaryActivate", "ContextMenu"}) {
        const QDBusMessage reply = callItem(member, {++x, 20});
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << member;
    }
    EXPECT_THAT(clicks, ElementsAre(QPoint(1, 20), QPoint(2, 20), QPoint(3, 20)));
}

TEST_F(StatusNotifierItemTest, scrollingAndTokensAreAnsweredAndDoNothing)
{
    EXPECT_EQ(callItem("Scroll", {120, QStringLiteral("vertical")}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(callItem("ProvideXdgActivationToken", {QStringLiteral("token")}).type(), QDBusMessage::ReplyMessage);
    EXPECT_THAT(clicks, IsEmpty());
}

TEST_F(StatusNotifierItemTest, newPercentageIsSignalledOnceInEveryForm)
{
    EXPECT_THAT(signalsAfter({.percent = 43}),
                UnorderedElementsAre(
                    "NewTitle", "NewToolTip", "NewIcon", "XAyatanaNewLabel| 43%| 100%",
                    "PropertiesChanged|org.kde.StatusNotifierItem|IconAccessibleDesc|Title|ToolTip|XAyatanaLabel"));
    EXPECT_EQ(property("Title").toString(), QStringLiteral("Tallyfox, 43 percent used"));
    EXPECT_EQ(property("XAyatanaLabel").toString(), QStringLiteral(" 43%"));
    EXPECT_EQ(qdbus_cast<StatusNotifierPixmaps>(property("IconPixmap")).value(0),
              statusNotifierPixmap(StatusIconPainter::image(QStringLiteral("43"), 16)));
}

TEST_F(StatusNotifierItemTest, sameContentIsNotSignalled)
{
    EXPECT_THAT(signalsAfter({.percent = 42}), IsEmpty());
}

TEST_F(StatusNotifierItemTest, numbersPaintedAlikeDoNotChangeTheIcon)
{
    signalsAfter({.percent = 1000});
    EXPECT_THAT(signalsAfter({.percent = 1001}),
                UnorderedElementsAre(
                    "NewTitle", "NewToolTip", "XAyatanaNewLabel| 1001%| 100%",
                    "PropertiesChanged|org.kde.StatusNotifierItem|IconAccessibleDesc|Title|ToolTip|XAyatanaLabel"));
}

TEST_F(StatusNotifierItemTest, removedPercentageLeavesTheSymbol)
{
    signalsAfter({});
    EXPECT_EQ(property("XAyatanaLabel").toString(), QString{});
    EXPECT_EQ(qdbus_cast<StatusNotifierPixmaps>(property("IconPixmap")).value(0),
              statusNotifierPixmap(StatusIconPainter::image({}, 16)));
}

TEST_F(StatusNotifierItemTest, besideALabelThePictureIsTheSymbol)
{
    item.setLabelShown(true);
    EXPECT_EQ(qdbus_cast<StatusNotifierPixmaps>(property("IconPixmap")).value(0),
              statusNotifierPixmap(StatusIconPainter::image({}, 16)));
    EXPECT_EQ(property("XAyatanaLabel").toString(), QStringLiteral(" 42%"));
    EXPECT_THAT(signalsAfter({.percent = 43}), testing::Not(testing::Contains("NewIcon")));
    signalRecorder.list.clear();
    item.setLabelShown(true);
    item.setLabelShown(false);
    EXPECT_EQ(qdbus_cast<StatusNotifierPixmaps>(property("IconPixmap")).value(0),
              statusNotifierPixmap(StatusIconPainter::image(QStringLiteral("43"), 16)));
    EXPECT_THAT(signalRecorder.list, ElementsAre("NewIcon"));
}

TEST_F(StatusNotifierItemTest, readingThePictureIsReportedAndNothingElse)
{
    int reads = 0;
    QObject::connect(&item, &StatusNotifierItem::pictureRead, &item, [&reads] { ++reads; });
    property("Id");
    property("XAyatanaLabel");
    EXPECT_EQ(reads, 0);
    property("IconPixmap");
    EXPECT_EQ(reads, 1);
    call(propertiesInterface, QStringLiteral("GetAll"), {itemInterface});
    EXPECT_EQ(reads, 2);
}

TEST_F(StatusNotifierItemTest, invalidCallsAreRefused)
{
    const QString text = QStringLiteral("text");
    const QDBusMessage replies[] = {
        callItem("Activate", {text, text}),
        callItem("Activate", {1}),
        callItem("Activate"),
        callItem("Activate", {qint64{1}, qint64{2}}),
        callItem("Scroll", {text, 120}),
        callItem("NewIcon"),
        callItem("deleteLater"),
        callItem("Quit"),
        call(QStringLiteral("org.kde.NoInterface"), QStringLiteral("Activate"), {1, 2}),
        call(propertiesInterface, QStringLiteral("Get"), {itemInterface, QStringLiteral("Menus")}),
        call(propertiesInterface, QStringLiteral("Get"), {itemInterface}),
        call(propertiesInterface, QStringLiteral("Get"), {1, 2}),
        call(propertiesInterface, QStringLiteral("Set"),
             {itemInterface, QStringLiteral("Title"), QVariant::fromValue(QDBusVariant{text})}),
        call(propertiesInterface, QStringLiteral("Set"),
             {itemInterface, QStringLiteral("Id"), QVariant::fromValue(QDBusVariant{text})}),
    };
    int index = 0;
    for (const QDBusMessage& reply : replies)
        EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage) << index++;
    EXPECT_THAT(clicks, IsEmpty());
    EXPECT_EQ(property("Id").toString(), QStringLiteral("org.tallyfox.tallyfox"));
    EXPECT_EQ(property("Title").toString(), QStringLiteral("Tallyfox, 42 percent used"));
}

TEST_F(StatusNotifierItemTest, hugeTextsAreAnsweredLikeShortOnes)
{
    const QString huge{1'048'576, QLatin1Char{'x'}};
    EXPECT_EQ(callItem("Scroll", {1, huge}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(callItem("ProvideXdgActivationToken", {huge}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(callItem("Activate", {huge, huge}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(propertiesInterface, QStringLiteral("Get"), {itemInterface, huge}).type(),
              QDBusMessage::ErrorMessage);
}

TEST_F(StatusNotifierItemTest, tenThousandCallsAreAnsweredWithoutLeakingMemory)
{
    const QDBusMessage calls[] = {
        message(itemInterface, QStringLiteral("Scroll"), {1, QStringLiteral("vertical")}),
        message(itemInterface, QStringLiteral("Activate"), {QStringLiteral("wrong"), 1}),
        message(itemInterface, QStringLiteral("Unknown"), {}),
        message(propertiesInterface, QStringLiteral("Get"), {itemInterface, QStringLiteral("IconPixmap")}),
    };
    const auto flood = [&] {
        for (int round = 0; round < 100; ++round) {
            std::vector<QDBusPendingCall> pending; // no more than the bus allows a peer to wait for
            for (int number = 0; number < 100; ++number)
                pending.push_back(panel.asyncCall(calls[number % 4]));
            ASSERT_TRUE(spinUntil([&] {
                return std::all_of(pending.begin(), pending.end(),
                                   [](const QDBusPendingCall& call) { return call.isFinished(); });
            }));
            for (std::size_t index = 0; index < pending.size(); ++index)
                EXPECT_EQ(pending[index].isError(), index % 4 == 1 || index % 4 == 2);
        }
    };
    flood(); // fills the libraries' caches
    const std::size_t before = mallinfo2().uordblks;
    flood();
    EXPECT_LT(mallinfo2().uordblks, before + 256 * 1024);
    EXPECT_EQ(property("Id").toString(), QStringLiteral("org.tallyfox.tallyfox"));
}

TEST_F(StatusNotifierItemTest, itemSurvivesItsBus)
{
    bus.kill();
    ASSERT_TRUE(spinUntil([&] { return !itemBus.isConnected(); }));
    item.setContent({.percent = 43});
    EXPECT_EQ(item.content().percent, 43);
}

} // namespace
} // namespace tallyfox::test
