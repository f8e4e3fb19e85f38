#include "Support/Agent/PrivateBus.h"
#include "Support/Agent/PrivateDisplay.h"
#include "Support/Agent/Probe.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/Bus/LocalSocket.h"
#include "Tallyfox/Agent/Instance/SocketInstance.h"

#include <QDBusMessage>
#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <atomic>
#include <csignal>
#include <map>
#include <sys/stat.h>
#include <thread>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

const QString id = QStringLiteral("org.tallyfox.tallyfox");

/// How the processes find each other.
enum class BackEnd { bus, socket };

void PrintTo(BackEnd backEnd, std::ostream* out)
{
    *out << (backEnd == BackEnd::bus ? "bus" : "socket");
}

class SingleInstanceTest : public testing::TestWithParam<BackEnd> {
protected:
    std::unique_ptr<Probe> start(const char* wish)
    {
        const QString bus = QStringLiteral("DBUS_SESSION_BUS_ADDRESS");
        return std::make_unique<Probe>(
            QStringLiteral(TALLYFOX_INSTANCE_PROBE), QStringList{QString::fromLatin1(wish)},
            QStringList{GetParam() == BackEnd::bus ? bus + QLatin1Char('=') + m_bus.address() : bus,
                        QStringLiteral("XDG_RUNTIME_DIR=") + m_folder.path()});
    }

    std::string outcome(const char* wish)
    {
        return start(wish)->nextLine().toStdString();
    }

    /// An action arrives within 2 s or not at all: on a busy machine that may take more than one attempt.
    bool arrives(const char* wish)
    {
        for (int attempt = 0; attempt < 20; ++attempt) {
            if (outcome(wish) == "arrived")
                return true;
        }
        return false;
    }

    PrivateBus m_bus;
    QTemporaryDir m_folder;
};

INSTANTIATE_TEST_SUITE_P(BackEnds, SingleInstanceTest, testing::Values(BackEnd::bus, BackEnd::socket),
                         [](const auto& backEnd) { return testing::PrintToString(backEnd.param); });

TEST_P(SingleInstanceTest, firstStartIsTheAgentAndGetsTheOthersActions)
{
    const auto agent = start("claim");
    ASSERT_EQ(agent->nextLine().toStdString(), "first");
    EXPECT_EQ(outcome("claim"), "other");
    for (const char* wish : {"show", "toggle", "settings"}) {
        EXPECT_TRUE(arrives(wish)) << wish;
        EXPECT_EQ(agent->nextLine().toStdString(), wish);
    }
}

TEST_P(SingleInstanceTest, withoutAnAgentActionsAreLost)
{
    EXPECT_EQ(outcome("toggle"), "lost");
}

TEST_P(SingleInstanceTest, runningAgentIsFoundWithoutAnApplicationObject)
{
    EXPECT_EQ(outcome("look"), "none");
    const auto agent = start("claim");
    ASSERT_EQ(agent->nextLine().toStdString(), "first");
    EXPECT_EQ(outcome("look"), "running");
    agent->kill();
    EXPECT_EQ(outcome("look"), "none");
}

TEST_P(SingleInstanceTest, stoppedAgentIsFound)
{
    const auto agent = start("claim");
    ASSERT_EQ(agent->nextLine().toStdString(), "first");
    agent->sendSignal(SIGSTOP);
    EXPECT_EQ(outcome("look"), "running");
}

TEST_P(SingleInstanceTest, killedAgentIsReplacedByTheNextStart)
{
    const auto killed = start("claim");
    ASSERT_EQ(killed->nextLine().toStdString(), "first");
    killed->kill();
    EXPECT_EQ(outcome("toggle"), "lost");
    const auto next = start("claim");
    ASSERT_EQ(next->nextLine().toStdString(), "first");
    EXPECT_TRUE(arrives("toggle"));
    EXPECT_EQ(next->nextLine().toStdString(), "toggle");
}

TEST_P(SingleInstanceTest, oneOfManyStartsBecomesTheAgent)
{
    std::vector<std::unique_ptr<Probe>> starts;
    for (int index = 0; index < 20; ++index)
        starts.push_back(start("claim"));
    std::map<std::string, int> outcomes;
    for (const auto& each : starts)
        ++outcomes[each->nextLine().toStdString()];
    EXPECT_EQ(outcomes, (std::map<std::string, int>{{"first", 1}, {"other", 19}}));
}

TEST_P(SingleInstanceTest, hangingAgentIsGivenUpAtTheTimeout)
{
    const auto agent = start("claim");
    ASSERT_EQ(agent->nextLine().toStdString(), "first");
    agent->sendSignal(SIGSTOP);
    EXPECT_EQ(outcome("show"), "lost");
    agent->sendSignal(SIGCONT);
    EXPECT_TRUE(arrives("toggle"));
}

TEST_P(SingleInstanceTest, agentThatIsBusyForAMomentIsWaitedFor)
{
    const auto agent = start("claim");
    ASSERT_EQ(agent->nextLine().toStdString(), "first");
    agent->sendSignal(SIGSTOP);
    const auto client = start("toggle");
    std::this_thread::sleep_for(600ms);
    agent->sendSignal(SIGCONT);
    EXPECT_EQ(client->nextLine().toStdString(), "arrived");
    EXPECT_EQ(agent->nextLine().toStdString(), "toggle");
}

/// An agent on a bus, in a process of its own.
class BusInstanceTest : public testing::Test {
protected:
    BusInstanceTest()
        : m_agent(QStringLiteral(TALLYFOX_INSTANCE_PROBE), {QStringLiteral("claim")},
                  {QStringLiteral("DBUS_SESSION_BUS_ADDRESS=") + m_bus.address(),
                   QStringLiteral("XDG_RUNTIME_DIR=") + m_folder.path()})
    { }

    void SetUp() override
    {
        ASSERT_EQ(m_agent.nextLine().toStdString(), "first");
    }

    QDBusMessage call(const char* method, const QVariantList& arguments)
    {
        QDBusMessage message =
            QDBusMessage::createMethodCall(id, QStringLiteral("/org/tallyfox/tallyfox"),
                                           QStringLiteral("org.freedesktop.Application"), QString::fromLatin1(method));
        message.setArguments(arguments);
        return m_peer.call(message, QDBus::Block, 20'000);
    }

    QTemporaryDir m_folder;
    PrivateBus m_bus;
    QDBusConnection m_peer = m_bus.connect();
    Probe m_agent;
};

TEST_F(BusInstanceTest, desktopsCanActivateItLikeAnyApplication)
{
    EXPECT_EQ(call("Activate", {QVariantMap{{QStringLiteral("activation-token"), QStringLiteral("x")}}}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(m_agent.nextLine().toStdString(), "show x");
    EXPECT_EQ(call("Open", {QStringList{QStringLiteral("file:///")}, QVariantMap{}}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(m_agent.nextLine().toStdString(), "show");
    EXPECT_EQ(call("ActivateAction", {QStringLiteral("settings"), QVariantList{1, QStringLiteral("x")}, QVariantMap{}})
                  .type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(m_agent.nextLine().toStdString(), "settings");
}

TEST_F(BusInstanceTest, activationTokenIsThatOfWaylandOrElseThatOfX11AndNoOtherType)
{
    const auto activate = [&](const QVariantMap& platformData) {
        EXPECT_EQ(call("Activate", {platformData}).type(), QDBusMessage::ReplyMessage);
        return m_agent.nextLine().toStdString();
    };
    const QString x11 = QStringLiteral("desktop-startup-id");
    const QString wayland = QStringLiteral("activation-token");
    EXPECT_EQ(activate({{x11, QStringLiteral("x_TIME1")}}), "show x_TIME1");
    EXPECT_EQ(activate({{x11, QStringLiteral("x_TIME1")}, {wayland, QStringLiteral("w")}}), "show w");
    EXPECT_EQ(activate({{wayland, QVariantMap{{x11, x11}}}}), "show");
    EXPECT_EQ(activate({{QStringLiteral("other"), x11}}), "show");
}

TEST_F(BusInstanceTest, tokenOfASecondStartReachesTheAgent)
{
    for (const char* variable : {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"}) {
        Probe second{QStringLiteral(TALLYFOX_INSTANCE_PROBE),
                     {QStringLiteral("settings")},
                     {QStringLiteral("DBUS_SESSION_BUS_ADDRESS=") + m_bus.address(),
                      QString::fromLatin1(variable) + QStringLiteral("=shell-1_TIME12345")}};
        EXPECT_EQ(second.nextLine().toStdString(), "arrived");
        EXPECT_EQ(m_agent.nextLine().toStdString(), "settings shell-1_TIME12345");
    }
}

TEST_F(BusInstanceTest, unknownActionGetsAnError)
{
    for (const QString& action :
         {QString{}, QStringLiteral("quit"), QString{1'000'000, QLatin1Char('x')}, QStringLiteral("toggle ")})
    {
        EXPECT_EQ(call("ActivateAction", {action, QVariantList{}, QVariantMap{}}).errorName(),
                  QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
    }
    EXPECT_TRUE(m_agent.nextLine(300ms).isNull());
}

TEST_F(BusInstanceTest, wrongTypesAndOtherMethodsGetAnError)
{
    const std::vector<std::pair<const char*, QVariantList>> calls{
        {"Activate", {}},
        {"Activate", {QStringLiteral("x")}},
        {"Activate", {QVariantMap{}, QVariantMap{}}},
        {"ActivateAction", {QStringLiteral("toggle")}},
        {"ActivateAction", {7, QVariantList{}, QVariantMap{}}},
        {"Open", {QVariantMap{}}},
        {"claim", {}},
        {"deleteLater", {}},
        {"requested", {0}},
    };
    for (const auto& [method, arguments] : calls)
        EXPECT_EQ(call(method, arguments).type(), QDBusMessage::ErrorMessage) << method;
    EXPECT_TRUE(m_agent.nextLine(300ms).isNull());
    EXPECT_EQ(m_agent.process().state(), QProcess::Running);
}

TEST_F(BusInstanceTest, nameCannotBeTakenOver)
{
    QDBusMessage request =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
    constexpr unsigned replaceAndDoNotQueue = 6;
    EXPECT_EQ(m_peer.call(request << id << replaceAndDoNotQueue).arguments().value(0).toUInt(), 3U);
}

TEST_F(BusInstanceTest, agentSurvivesItsBus)
{
    m_bus.kill();
    EXPECT_TRUE(m_agent.nextLine(500ms).isNull());
    EXPECT_EQ(m_agent.process().state(), QProcess::Running);
}

/// A bus that accepts connections and never answers.
class SilentBus {
public:
    SilentBus()
        : m_socket(newLocalSocket())
    {
        const auto address = localAddress(m_folder.filePath(QStringLiteral("bus")).toUtf8());
        EXPECT_EQ(bind(m_socket.get(), address->get(), address->size), 0);
        EXPECT_EQ(listen(m_socket.get(), 8), 0);
    }

    [[nodiscard]] QStringList environment() const
    {
        return {QStringLiteral("DBUS_SESSION_BUS_ADDRESS=unix:path=") + m_folder.filePath(QStringLiteral("bus")),
                QStringLiteral("XDG_RUNTIME_DIR=") + m_folder.path()};
    }

private:
    QTemporaryDir m_folder;
    FileDescriptor m_socket;
};

TEST(SilentSessionBus, isReplacedByTheSocket)
{
    const SilentBus bus;
    const auto start = [&](const char* wish) {
        return std::make_unique<Probe>(QStringLiteral(TALLYFOX_INSTANCE_PROBE), QStringList{QString::fromLatin1(wish)},
                                       bus.environment());
    };
    const auto agent = start("claim");
    ASSERT_EQ(agent->nextLine().toStdString(), "first") << "Qt would wait for 25 s";
    EXPECT_EQ(start("claim")->nextLine().toStdString(), "other");
    std::string outcome = "lost";
    for (int attempt = 0; attempt < 20 && outcome != "arrived"; ++attempt)
        outcome = start("toggle")->nextLine().toStdString();
    EXPECT_EQ(outcome, "arrived");
    EXPECT_EQ(agent->nextLine().toStdString(), "toggle");
}

TEST(SilentSessionBus, doesNotBlockQt)
{
    const SilentBus bus;
    const PrivateDisplay display;
    Probe program{QStringLiteral(TALLYFOX_SHORTCUT_PROBE),
                  {},
                  bus.environment()
                      + QStringList{QStringLiteral("DISPLAY=") + display.name(), QStringLiteral("QT_QPA_PLATFORM=xcb"),
                                    QStringLiteral("WAYLAND_DISPLAY=wayland-0")}};
    EXPECT_EQ(program.nextLine().toStdString(), "ready");
}

/// An agent with a socket, and its clients, in this process.
class SocketInstanceTest : public testing::Test {
protected:
    QByteArray file(const char* name) const
    {
        return m_folder.filePath(id + QString::fromLatin1(name)).toUtf8();
    }

    void claim()
    {
        m_agent.emplace(m_folder.path().toUtf8(), id);
        QObject::connect(&*m_agent, &SingleInstance::requested,
                         [this](AgentAction action) { m_requests.push_back(action); });
        ASSERT_EQ(m_agent->claim(), SingleInstance::Claim::first);
    }

    FileDescriptor connected() const
    {
        return connectedSocket(*localAddress(file(".socket")));
    }

    /// What the agent replies to `bytes` before it closes the connection.
    std::string answerTo(const QByteArray& bytes)
    {
        const FileDescriptor socket = connected();
        EXPECT_TRUE(socket.isOpen());
        QByteArray answer;
        std::thread client{[&] {
            sendAll(socket, bytes, QDeadlineTimer{20s});
            while (receiveMore(socket, answer, QDeadlineTimer{20s})) {
            }
            m_isAnswered = true;
        }};
        EXPECT_TRUE(spinUntil([this] { return m_isAnswered.exchange(false); }));
        client.join();
        return answer.toStdString();
    }

    QTemporaryDir m_folder;
    std::optional<SocketInstance> m_agent;
    std::vector<AgentAction> m_requests;
    std::atomic<bool> m_isAnswered = false;
};

TEST_F(SocketInstanceTest, actionsAreReadInWholeLines)
{
    claim();
    EXPECT_EQ(answerTo("toggle\n"), "ok\n");
    EXPECT_EQ(answerTo("settings\nmore"), "ok\n");
    EXPECT_TRUE(spinUntil([this] { return m_requests.size() == 2; }));
    EXPECT_THAT(m_requests, ElementsAre(AgentAction::toggle, AgentAction::settings));
}

TEST_F(SocketInstanceTest, otherBytesAreIgnored)
{
    claim();
    for (const QByteArray& bytes : {QByteArray{"quit\n"}, QByteArray{"\n"}, QByteArray{"TOGGLE\n"},
                                    QByteArray{"toggle\r\n"}, QByteArray{1'000, 'x'}, QByteArray{"toggle\0\n", 8}})
        EXPECT_EQ(answerTo(bytes), "") << bytes.toStdString();
    EXPECT_EQ(answerTo("show\n"), "ok\n");
    EXPECT_TRUE(spinUntil([this] { return !m_requests.empty(); }));
    EXPECT_THAT(m_requests, ElementsAre(AgentAction::show));
}

TEST_F(SocketInstanceTest, endlessInputIsCutOff)
{
    claim();
    const FileDescriptor socket = connected();
    bool isCutOff = false;
    std::thread client{[&] {
        const QByteArray block{65'536, 'x'};
        while (sendAll(socket, block, QDeadlineTimer{20s})) {
        }
        isCutOff = true;
        m_isAnswered = true;
    }};
    EXPECT_TRUE(spinUntil([this] { return m_isAnswered.load(); }));
    client.join();
    EXPECT_TRUE(isCutOff);
}

TEST_F(SocketInstanceTest, manySilentPeersDoNotBlockOthersForLong)
{
    claim();
    std::vector<FileDescriptor> idlers;
    for (int index = 0; index < 40; ++index)
        idlers.push_back(connected());
    EXPECT_EQ(answerTo("toggle\n"), "ok\n");
}

TEST_F(SocketInstanceTest, onlyTheUserCanConnect)
{
    claim();
    struct stat status { };
    ASSERT_EQ(stat(file(".socket").constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    ASSERT_EQ(stat(file(".lock").constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(SocketInstanceTest, socketIsRemovedWithTheAgent)
{
    claim();
    m_agent.reset();
    EXPECT_FALSE(QFile::exists(QString::fromUtf8(file(".socket"))));
    claim();
}

TEST_F(SocketInstanceTest, folderThatOthersCanWriteToIsRefused)
{
    ASSERT_EQ(chmod(m_folder.path().toUtf8().constData(), 0777), 0);
    SocketInstance instance{m_folder.path().toUtf8(), id};
    EXPECT_EQ(instance.claim(), SingleInstance::Claim::impossible);
    EXPECT_FALSE(instance.isListening());
    EXPECT_FALSE(instance.send(AgentAction::show, {}, 300ms));
}

TEST_F(SocketInstanceTest, everythingButAFolderOfTheUserIsRefused)
{
    const QString link = m_folder.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(m_folder.path(), link));
    const QByteArray longName = m_folder.path().toUtf8() + '/' + QByteArray{120, 'x'};
    ASSERT_EQ(mkdir(longName.constData(), 0700), 0);
    for (const QByteArray& folder : {QByteArray{}, QByteArray{"relative"}, QByteArray{"/nonexistent"}, link.toUtf8(),
                                     QByteArray{"/dev/null"}, longName})
    {
        SocketInstance instance{folder, id};
        EXPECT_EQ(instance.claim(), SingleInstance::Claim::impossible) << folder.toStdString();
    }
}

TEST_F(SocketInstanceTest, linkInPlaceOfTheLockIsNotFollowed)
{
    ASSERT_TRUE(QFile::link(m_folder.filePath(QStringLiteral("victim")), QString::fromUtf8(file(".lock"))));
    SocketInstance instance{m_folder.path().toUtf8(), id};
    EXPECT_EQ(instance.claim(), SingleInstance::Claim::impossible);
    EXPECT_FALSE(QFile::exists(m_folder.filePath(QStringLiteral("victim"))));
}

} // namespace
} // namespace tallyfox::test
