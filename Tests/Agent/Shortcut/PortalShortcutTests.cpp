#include "Support/Agent/FakePortal.h"
#include "Support/Agent/PrivateBus.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/Shortcut/PortalShortcut.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QGuiApplication>
#include <gmock/gmock.h>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const QString sessionPath = QStringLiteral("/org/freedesktop/portal/desktop/session/1_2/theSession");
const QString shortcutId = QStringLiteral("toggle-popover");

/// An entry, "(sa{sv})", of the portal's list of shortcuts.
struct Entry {
    QString id;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Entry& entry)
{
    argument.beginStructure();
    argument << entry.id << QVariantMap{};
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Entry& entry)
{
    QVariantMap properties;
    argument.beginStructure();
    argument >> entry.id >> properties;
    argument.endStructure();
    return argument;
}

PortalDecision granting(const QList<Entry>& entries)
{
    return {.response = 0, .results = {{QStringLiteral("shortcuts"), QVariant::fromValue(entries)}}};
}

std::optional<PortalDecision> consent(const QDBusMessage& call)
{
    if (call.member() == QStringLiteral("CreateSession"))
        return PortalDecision{.response = 0, .results = {{QStringLiteral("session_handle"), sessionPath}}};
    return granting({{shortcutId}});
}

class PortalShortcutTest : public testing::Test {
protected:
    PortalShortcutTest()
    {
        qDBusRegisterMetaType<Entry>();
        qDBusRegisterMetaType<QList<Entry>>();
    }

    void create()
    {
        m_consents.clear();
        m_shortcut.emplace(m_program);
        QObject::connect(&*m_shortcut, &PortalShortcut::consentChanged,
                         [this](bool hasConsent) { m_consents.push_back(hasConsent); });
        QObject::connect(&*m_shortcut, &GlobalShortcut::activated, [this] { ++m_activations; });
    }

    void start()
    {
        create();
        m_shortcut->request();
    }

    [[nodiscard]] bool isBound() const
    {
        return m_shortcut->state() == ShortcutState::inForce;
    }

    bool becomes(ShortcutState state)
    {
        return spinUntil([&] { return m_shortcut->state() == state; });
    }

    bool becomesBound()
    {
        return becomes(ShortcutState::inForce);
    }

    static void activate(const QDBusConnection& bus, const QString& session, const QString& id)
    {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                         QStringLiteral("org.freedesktop.portal.GlobalShortcuts"),
                                                         QStringLiteral("Activated"));
        bus.send(signal << QVariant::fromValue(QDBusObjectPath{session}) << id << qulonglong{1} << QVariantMap{});
    }

    PrivateBus m_bus;
    QDBusConnection m_program = m_bus.connect();
    QDBusConnection m_portalsBus = m_bus.connect();
    std::optional<PortalShortcut> m_shortcut;
    std::vector<bool> m_consents;
    int m_activations = 0;
};

TEST_F(PortalShortcutTest, boundKeysActivate)
{
    FakePortal portal{m_portalsBus, consent};
    start();
    ASSERT_TRUE(becomesBound());
    const QDBusMessage call = portal.callsOf("BindShortcuts").front();
    EXPECT_EQ(call.signature(), QStringLiteral("oa(sa{sv})sa{sv}"));
    EXPECT_EQ(call.arguments().front().value<QDBusObjectPath>().path(), sessionPath);
    activate(m_portalsBus, sessionPath, shortcutId);
    ASSERT_TRUE(spinUntil([this] { return m_activations == 1; }));
    EXPECT_THAT(m_consents, ElementsAre(true));
}

TEST_F(PortalShortcutTest, applicationIsRegisteredBeforeItAsks)
{
    const QString before = QGuiApplication::desktopFileName();
    QGuiApplication::setDesktopFileName(QStringLiteral("org.tallyfox.tallyfox"));
    FakePortal portal{m_portalsBus, consent};
    start();
    ASSERT_TRUE(becomesBound());
    QGuiApplication::setDesktopFileName(before);
    const QList<QDBusMessage>& calls = portal.service().messages();
    ASSERT_GE(calls.size(), 2);
    EXPECT_EQ(calls.at(0).interface(), QStringLiteral("org.freedesktop.host.portal.Registry"));
    EXPECT_EQ(calls.at(0).signature(), QStringLiteral("sa{sv}"));
    EXPECT_EQ(calls.at(0).arguments().front(), QStringLiteral("org.tallyfox.tallyfox"));
    EXPECT_EQ(calls.at(1).member(), QStringLiteral("CreateSession"));
    EXPECT_EQ(calls.at(1).service(), calls.at(0).service()) << "on another connection";
}

TEST_F(PortalShortcutTest, listedShortcutIsBoundWhateverTheCode)
{
    FakePortal portal{m_portalsBus, [](const QDBusMessage& call) {
                          std::optional<PortalDecision> decision = consent(call);
                          if (call.member() == QStringLiteral("BindShortcuts"))
                              decision->response = 2;
                          return decision;
                      }};
    start();
    ASSERT_TRUE(becomesBound());
    EXPECT_THAT(m_consents, ElementsAre(true));
}

TEST_F(PortalShortcutTest, nothingIsAskedWithoutARequest)
{
    FakePortal portal{m_portalsBus, consent};
    create();
    spinFor(300ms);
    EXPECT_THAT(portal.service().calls(), IsEmpty());
    EXPECT_EQ(m_shortcut->state(), ShortcutState::notInForce);
}

TEST_F(PortalShortcutTest, checkAsksForTheVersionOnly)
{
    const QVariantList version{QVariant::fromValue(QDBusVariant{2U})};
    FakeService portal{m_portalsBus, QStringLiteral("org.freedesktop.portal.Desktop"), answering(version)};
    create();
    m_shortcut->check();
    EXPECT_TRUE(becomes(ShortcutState::onRequest));
    EXPECT_THAT(portal.calls(), ElementsAre(QStringLiteral("Get(org.freedesktop.portal.GlobalShortcuts, version)")));
    EXPECT_EQ(portal.messages().front().signature(), QStringLiteral("ss"));
}

TEST_F(PortalShortcutTest, portalWithoutShortcutsCannotBeAsked)
{
    const QString name = QStringLiteral("org.freedesktop.portal.Desktop");
    for (const FakeService::Answer& answer : {refusing(), answering({}), answering({2U})}) {
        FakeService portal{m_portalsBus, name, answer};
        create();
        m_shortcut->check();
        ASSERT_TRUE(spinUntil([&] { return portal.calls().size() == 1; }));
        spinFor(200ms);
        EXPECT_EQ(m_shortcut->state(), ShortcutState::notInForce);
        m_shortcut.reset();
    }
}

TEST_F(PortalShortcutTest, requestsWhileOneIsPendingOrGrantedAreIgnored)
{
    std::optional<PortalDecision> decision;
    FakePortal portal{m_portalsBus, [&](const QDBusMessage& call) {
                          return call.member() == QStringLiteral("BindShortcuts") ? decision : consent(call);
                      }};
    start();
    m_shortcut->request();
    ASSERT_TRUE(spinUntil([&] { return portal.callsOf("BindShortcuts").size() == 1; }));
    m_shortcut->request();
    m_shortcut->check();
    ASSERT_TRUE(spinUntil([&] { return portal.callsOf("Get").size() == 1; }));
    portal.respond(FakePortal::handleOf(portal.callsOf("BindShortcuts").front()),
                   *consent(portal.callsOf("BindShortcuts").front()));
    ASSERT_TRUE(becomesBound());
    m_shortcut->request();
    spinFor(200ms);
    EXPECT_EQ(portal.callsOf("CreateSession").size(), 1);
}

TEST_F(PortalShortcutTest, requestAfterARefusalAsksAgain)
{
    PortalDecision decision{.response = 1};
    FakePortal portal{m_portalsBus, [&](const QDBusMessage& call) {
                          return call.member() == QStringLiteral("BindShortcuts") ? decision : consent(call);
                      }};
    start();
    ASSERT_TRUE(becomes(ShortcutState::onRequest));
    decision = granting({{shortcutId}});
    m_shortcut->request();
    ASSERT_TRUE(becomesBound());
    EXPECT_THAT(m_consents, ElementsAre(false, true));
}

TEST_F(PortalShortcutTest, onlyTheShortcutOfTheSessionActivates)
{
    FakePortal portal{m_portalsBus, consent};
    start();
    ASSERT_TRUE(becomesBound());
    const QDBusConnection stranger = m_bus.connect();
    activate(stranger, sessionPath, shortcutId);
    activate(m_portalsBus, sessionPath + QStringLiteral("x"), shortcutId);
    activate(m_portalsBus, sessionPath, QStringLiteral("another"));
    QDBusMessage strange = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                      QStringLiteral("org.freedesktop.portal.GlobalShortcuts"),
                                                      QStringLiteral("Activated"));
    m_portalsBus.send(strange << 7);
    spinFor(200ms);
    EXPECT_EQ(m_activations, 0);
    activate(m_portalsBus, sessionPath, shortcutId);
    EXPECT_TRUE(spinUntil([this] { return m_activations == 1; }));
}

TEST_F(PortalShortcutTest, portalThatRefusesIsNotAskedAgain)
{
    for (const char* refused : {"CreateSession", "BindShortcuts"}) {
        FakePortal portal{m_portalsBus, [&](const QDBusMessage& call) {
                              return call.member() == QLatin1StringView{refused} ? PortalDecision{.response = 1}
                                                                                 : consent(call);
                          }};
        start();
        ASSERT_TRUE(spinUntil([&] { return portal.callsOf(refused).size() == 1; })) << refused;
        spinFor(300ms);
        EXPECT_FALSE(isBound()) << refused;
        EXPECT_EQ(portal.callsOf("CreateSession").size(), 1) << refused;
        EXPECT_EQ(portal.callsOf(refused).size(), 1) << "asked again: " << refused;
        EXPECT_EQ(m_consents.size(), refused == std::string_view{"BindShortcuts"} ? 1U : 0U) << "the user's decision";
        m_shortcut.reset();
    }
}

TEST_F(PortalShortcutTest, invalidSessionsAreNotBound)
{
    const std::vector<QVariantMap> wrongSessions{
        {},
        {{QStringLiteral("session_handle"), QStringList{sessionPath, sessionPath}}},
        {{QStringLiteral("session_handle"), QString{}}},
        {{QStringLiteral("session_handle"), QStringLiteral("no path")}},
    };
    for (const QVariantMap& results : wrongSessions) {
        FakePortal portal{m_portalsBus, [&](const QDBusMessage&) { return PortalDecision{.results = results}; }};
        start();
        ASSERT_TRUE(spinUntil([&] { return portal.callsOf("CreateSession").size() == 1; }));
        spinFor(200ms);
        EXPECT_FALSE(isBound());
        EXPECT_THAT(portal.callsOf("BindShortcuts"), IsEmpty());
        m_shortcut.reset();
    }
}

TEST_F(PortalShortcutTest, shortcutThatTheUserHasRemovedIsNotBound)
{
    const std::vector<PortalDecision> decisions{
        granting({}),
        granting({{QStringLiteral("another")}}),
        {},
        {.results = {{QStringLiteral("shortcuts"), QStringLiteral("toggle-popover")}}}};
    for (const PortalDecision& decision : decisions) {
        FakePortal portal{m_portalsBus, [&](const QDBusMessage& call) {
                              return call.member() == QStringLiteral("BindShortcuts") ? decision : consent(call);
                          }};
        start();
        ASSERT_TRUE(spinUntil([&] { return portal.callsOf("Close").size() >= 2; })) << "the session is closed";
        EXPECT_THAT(m_consents, ElementsAre(false));
        EXPECT_FALSE(isBound());
        m_shortcut.reset();
    }
}

TEST_F(PortalShortcutTest, sessionIsClosedWithTheObject)
{
    FakePortal portal{m_portalsBus, consent};
    start();
    ASSERT_TRUE(becomesBound());
    m_shortcut.reset();
    EXPECT_TRUE(spinUntil([&] {
        const auto calls = portal.callsOf("Close");
        return !calls.isEmpty() && calls.back().path() == sessionPath;
    }));
}

TEST_F(PortalShortcutTest, sessionClosedByThePortalIsNotRenewed)
{
    FakePortal portal{m_portalsBus, consent};
    start();
    ASSERT_TRUE(becomesBound());
    m_portalsBus.send(QDBusMessage::createSignal(sessionPath, QStringLiteral("org.freedesktop.portal.Session"),
                                                 QStringLiteral("Closed")));
    EXPECT_TRUE(spinUntil([this] { return !isBound(); }));
    spinFor(200ms);
    EXPECT_EQ(portal.callsOf("CreateSession").size(), 1);
}

TEST_F(PortalShortcutTest, restartedPortalIsAskedOnceMore)
{
    std::optional<FakePortal> portal{std::in_place, m_portalsBus, consent};
    start();
    ASSERT_TRUE(becomesBound());
    portal.reset();
    ASSERT_TRUE(spinUntil([this] { return !isBound(); }));
    const QDBusConnection nextBus = m_bus.connect();
    FakePortal next{nextBus, consent};
    ASSERT_TRUE(becomesBound());
    EXPECT_EQ(next.callsOf("CreateSession").size(), 1);
    activate(nextBus, sessionPath, shortcutId);
    EXPECT_TRUE(spinUntil([this] { return m_activations == 1; }));
}

TEST_F(PortalShortcutTest, portalThatDiesDuringTheRequestIsNotAskedAgain)
{
    std::optional<FakePortal> portal{std::in_place, m_portalsBus, [](const QDBusMessage&) { return std::nullopt; }};
    start();
    ASSERT_TRUE(spinUntil([&] { return portal->callsOf("CreateSession").size() == 1; }));
    portal.reset();
    FakePortal next{m_bus.connect(), consent};
    spinFor(300ms);
    EXPECT_FALSE(isBound());
    EXPECT_THAT(m_consents, IsEmpty()) << "nobody has declined";
    EXPECT_THAT(next.callsOf("CreateSession"), IsEmpty());
}

TEST_F(PortalShortcutTest, missingPortalIsNotAnError)
{
    start();
    spinFor(200ms);
    EXPECT_FALSE(isBound());
}

} // namespace
} // namespace tallyfox::test
