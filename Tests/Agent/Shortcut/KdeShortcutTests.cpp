#include "Support/Agent/FakeKdeService.h"
#include "Support/Agent/PrivateBus.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/Shortcut/KdeShortcut.h"

#include <QDBusConnectionInterface>
#include <gmock/gmock.h>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

using Keys = FakeKdeService::Keys;

class KdeShortcutTest : public testing::Test {
protected:
    void start()
    {
        m_shortcut.emplace(m_program);
        QObject::connect(&*m_shortcut, &GlobalShortcut::activated, [this] { ++m_activations; });
    }

    bool becomes(ShortcutState state)
    {
        return spinUntil([&] { return m_shortcut->state() == state; });
    }

    bool becomesUnserved()
    {
        return spinUntil([this] { return !m_shortcut->isServed(); });
    }

    /// The first two strings of the list that an argument is.
    static QStringList idOf(const QDBusMessage& call)
    {
        return call.arguments().at(0).toStringList().mid(0, 2);
    }

    PrivateBus m_bus;
    QDBusConnection m_program = m_bus.connect();
    QDBusConnection m_servicesBus = m_bus.connect();
    std::optional<KdeShortcut> m_shortcut;
    int m_activations = 0;
};

TEST_F(KdeShortcutTest, keysAreRegisteredOnceAsDefaultAndAsPresent)
{
    const FakeKdeService service{m_servicesBus, FakeKdeService::usualKeys()};
    start();
    ASSERT_TRUE(becomes(ShortcutState::inForce));
    spinFor(200ms);
    EXPECT_THAT(service.methods(),
                ElementsAre(QStringLiteral("doRegister"), QStringLiteral("setShortcutKeys"),
                            QStringLiteral("setShortcutKeys")));
    EXPECT_EQ(service.callsOf("doRegister").front().arguments().front().toStringList(),
              (QStringList{QStringLiteral("tallyfox"), QStringLiteral("toggle-popover"), QStringLiteral("Tallyfox"),
                           QStringLiteral("Open or close Tallyfox")}));
    std::vector<unsigned> flags;
    for (const QDBusMessage& call : service.callsOf("setShortcutKeys")) {
        ASSERT_EQ(call.signature(), QStringLiteral("asa(ai)u"));
        EXPECT_EQ(idOf(call), (QStringList{QStringLiteral("tallyfox"), QStringLiteral("toggle-popover")}));
        const auto keys = qdbus_cast<Keys>(call.arguments().at(1).value<QDBusArgument>());
        ASSERT_EQ(keys.size(), 1);
        EXPECT_EQ(keys.front().keys, (QList<int>{FakeKdeService::metaAltB, 0, 0, 0}));
        flags.push_back(call.arguments().at(2).toUInt());
    }
    EXPECT_THAT(flags, ElementsAre(8U, 2U)) << "keys that the user has chosen are kept";
}

TEST_F(KdeShortcutTest, pressedKeysActivate)
{
    const FakeKdeService service{m_servicesBus, FakeKdeService::usualKeys()};
    start();
    ASSERT_TRUE(becomes(ShortcutState::inForce));
    FakeKdeService::press(m_servicesBus);
    EXPECT_TRUE(spinUntil([this] { return m_activations == 1; }));
}

TEST_F(KdeShortcutTest, heldKeysActivateOnce)
{
    const FakeKdeService service{m_servicesBus, FakeKdeService::usualKeys()};
    start();
    ASSERT_TRUE(becomes(ShortcutState::inForce));
    for (int round = 1; round <= 3; ++round) {
        for (int repeats = 0; repeats < 20; ++repeats)
            FakeKdeService::press(m_servicesBus);
        FakeKdeService::release(m_servicesBus);
        spinFor(100ms);
        EXPECT_EQ(m_activations, round);
    }
}

TEST_F(KdeShortcutTest, onlyThisShortcutOfTheServiceActivates)
{
    const FakeKdeService service{m_servicesBus, FakeKdeService::usualKeys()};
    start();
    ASSERT_TRUE(becomes(ShortcutState::inForce));
    const QDBusConnection stranger = m_bus.connect();
    for (int count = 0; count < 2'000; ++count)
        FakeKdeService::press(stranger);
    FakeKdeService::press(m_servicesBus, QStringLiteral("another"));
    FakeKdeService::press(m_servicesBus, QStringLiteral("tallyfox"), QStringLiteral("another"));
    m_servicesBus.send(FakeKdeService::keysSignal("globalShortcutPressed"));
    m_servicesBus.send(FakeKdeService::keysSignal("globalShortcutPressed") << 7 << 8 << qlonglong{9});
    m_servicesBus.send(FakeKdeService::keysSignal("globalShortcutPressed")
                       << QStringLiteral("tallyfox") << QStringLiteral("toggle-popover") << 9);
    FakeKdeService::press(m_servicesBus);
    EXPECT_TRUE(spinUntil([this] { return m_activations > 0; }));
    spinFor(200ms);
    EXPECT_EQ(m_activations, 1);
}

TEST_F(KdeShortcutTest, keysThatTheServiceHasNotAssignedAreNotInForceButLeftToIt)
{
    for (const Keys& keys : {Keys{}, Keys{{}}, Keys{{{0, 0, 0, 0}}}, Keys{{{0, 5, 0, 0}}, {{}}}}) {
        const FakeKdeService service{m_servicesBus, keys};
        start();
        ASSERT_TRUE(spinUntil([&] { return service.callsOf("setShortcutKeys").size() == 2; }));
        spinFor(200ms);
        EXPECT_EQ(m_shortcut->state(), ShortcutState::notInForce);
        EXPECT_TRUE(m_shortcut->isServed());
        m_shortcut.reset();
    }
}

TEST_F(KdeShortcutTest, otherKeysOfTheUserAreInForce)
{
    const FakeKdeService service{m_servicesBus, {{{0, 0, 0, 0}}, {{0x41, 0, 0, 0}}}};
    start();
    EXPECT_TRUE(becomes(ShortcutState::inForce));
}

TEST_F(KdeShortcutTest, changeInSystemSettingsIsFollowed)
{
    const FakeKdeService service{m_servicesBus, FakeKdeService::usualKeys()};
    start();
    ASSERT_TRUE(becomes(ShortcutState::inForce));
    FakeKdeService::change(m_servicesBus, {{{0, 0, 0, 0}}});
    EXPECT_TRUE(becomes(ShortcutState::notInForce));
    EXPECT_TRUE(m_shortcut->isServed());
    FakeKdeService::change(m_servicesBus, {{{0x41, 0, 0, 0}}});
    EXPECT_TRUE(becomes(ShortcutState::inForce));
}

TEST_F(KdeShortcutTest, changesOfOthersAndByOthersAreIgnored)
{
    const FakeKdeService service{m_servicesBus, FakeKdeService::usualKeys()};
    start();
    ASSERT_TRUE(becomes(ShortcutState::inForce));
    const QDBusConnection stranger = m_bus.connect();
    FakeKdeService::change(stranger, {});
    FakeKdeService::change(m_servicesBus, {}, QStringLiteral("another"));
    FakeKdeService::change(m_servicesBus, {}, QStringLiteral("tallyfox"), QStringLiteral("another"));
    m_servicesBus.send(FakeKdeService::changeSignal());
    m_servicesBus.send(FakeKdeService::changeSignal() << QStringList{} << QVariant::fromValue(Keys{}));
    m_servicesBus.send(FakeKdeService::changeSignal()
                       << QStringList{QStringLiteral("tallyfox"), QStringLiteral("toggle-popover")}
                       << QVariant::fromValue(QList<int>{}));
    spinFor(300ms);
    EXPECT_EQ(m_shortcut->state(), ShortcutState::inForce);
}

TEST_F(KdeShortcutTest, missingServiceLeavesTheKeysToOthers)
{
    start();
    EXPECT_TRUE(m_shortcut->isServed()) << "before the bus has answered";
    EXPECT_TRUE(becomesUnserved());
    EXPECT_EQ(m_shortcut->state(), ShortcutState::notInForce);
}

TEST_F(KdeShortcutTest, serviceThatAnswersSomethingElseLeavesTheKeysToOthers)
{
    const QString name = QLatin1StringView{FakeKdeService::name};
    for (const FakeService::Answer& answer :
         {refusing(), answering({}), answering({QStringLiteral("keys")}), answering({QVariantList{1}, 2})})
    {
        const FakeService service{m_servicesBus, name, answer};
        start();
        EXPECT_TRUE(becomesUnserved());
        m_shortcut.reset();
    }
}

TEST_F(KdeShortcutTest, serviceThatDiesBeforeItsAnswerLeavesTheKeysToOthers)
{
    std::optional<FakeService> service{std::in_place, m_servicesBus, QLatin1StringView{FakeKdeService::name}, silent()};
    start();
    ASSERT_TRUE(spinUntil([&] { return service->callsOf("setShortcutKeys").size() == 2; }));
    EXPECT_TRUE(m_shortcut->isServed());
    service.reset();
    EXPECT_TRUE(becomesUnserved());
}

TEST_F(KdeShortcutTest, restartedServiceGetsTheKeysOnceMore)
{
    std::optional<FakeKdeService> service{std::in_place, m_servicesBus, FakeKdeService::usualKeys()};
    start();
    ASSERT_TRUE(becomes(ShortcutState::inForce));
    service.reset();
    ASSERT_TRUE(becomes(ShortcutState::notInForce));
    EXPECT_FALSE(m_shortcut->isServed());
    FakeKdeService::press(m_servicesBus);
    const QDBusConnection nextBus = m_bus.connect();
    const FakeKdeService next{nextBus, FakeKdeService::usualKeys()};
    ASSERT_TRUE(becomes(ShortcutState::inForce));
    EXPECT_TRUE(m_shortcut->isServed());
    spinFor(200ms);
    EXPECT_EQ(next.callsOf("doRegister").size(), 1);
    FakeKdeService::press(m_servicesBus);
    FakeKdeService::press(nextBus);
    EXPECT_TRUE(spinUntil([this] { return m_activations > 0; }));
    spinFor(200ms);
    EXPECT_EQ(m_activations, 1) << "the service that has ended is a stranger";
}

TEST_F(KdeShortcutTest, keysAreNotInForceUntilAReplacementHasThem)
{
    const QString name = QLatin1StringView{FakeKdeService::name};
    std::optional<FakeKdeService> service{std::in_place, m_servicesBus, FakeKdeService::usualKeys()};
    start();
    ASSERT_TRUE(becomes(ShortcutState::inForce));
    QDBusConnection nextBus = m_bus.connect();
    const FakeService next{nextBus, name, silent()};
    nextBus.interface()->registerService(name, QDBusConnectionInterface::QueueService);
    QObject::connect(&*m_shortcut, &KdeShortcut::isServedChanged, [] { ADD_FAILURE() << "nobody else gets the keys"; });
    service.reset(); // its name goes to the next in the queue
    EXPECT_TRUE(becomes(ShortcutState::notInForce));
    EXPECT_TRUE(spinUntil([&] { return next.callsOf("setShortcutKeys").size() == 2; }));
    EXPECT_TRUE(m_shortcut->isServed());
    QObject::disconnect(&*m_shortcut, &KdeShortcut::isServedChanged, nullptr, nullptr);
}

TEST_F(KdeShortcutTest, serviceThatStartsLaterGetsTheKeysAfterOthersHaveLeftThem)
{
    start();
    ASSERT_TRUE(becomesUnserved());
    std::vector<std::string> events;
    QObject::connect(&*m_shortcut, &KdeShortcut::isServedChanged,
                     [&](bool isServed) { events.emplace_back(isServed ? "served" : "not served"); });
    FakeKdeService service{m_servicesBus, FakeKdeService::usualKeys()};
    service.aboutToRegister = [&] { events.emplace_back("registered"); };
    ASSERT_TRUE(becomes(ShortcutState::inForce));
    EXPECT_THAT(events, ElementsAre("served", "registered"));
}

TEST_F(KdeShortcutTest, lostBusLeavesTheKeysToOthers)
{
    const FakeKdeService service{m_servicesBus, FakeKdeService::usualKeys()};
    start();
    ASSERT_TRUE(becomes(ShortcutState::inForce));
    m_bus.kill();
    EXPECT_TRUE(becomesUnserved());
    EXPECT_EQ(m_shortcut->state(), ShortcutState::notInForce);
}

TEST_F(KdeShortcutTest, endOfTheObjectMakesTheShortcutInactive)
{
    const FakeKdeService service{m_servicesBus, FakeKdeService::usualKeys()};
    start();
    ASSERT_TRUE(becomes(ShortcutState::inForce));
    m_shortcut.reset();
    ASSERT_TRUE(spinUntil([&] { return service.callsOf("setInactive").size() == 1; }));
    const QDBusMessage call = service.callsOf("setInactive").front();
    EXPECT_EQ(call.signature(), QStringLiteral("as"));
    EXPECT_EQ(idOf(call), (QStringList{QStringLiteral("tallyfox"), QStringLiteral("toggle-popover")}));
}

TEST_F(KdeShortcutTest, endOfTheObjectBeforeTheAnswerIsHarmless)
{
    FakeService service{m_servicesBus, QLatin1StringView{FakeKdeService::name}, silent()};
    start();
    ASSERT_TRUE(spinUntil([&] { return service.callsOf("setShortcutKeys").size() == 2; }));
    m_shortcut.reset();
    EXPECT_TRUE(spinUntil([&] { return service.callsOf("setInactive").size() == 1; }));
}

} // namespace
} // namespace tallyfox::test
