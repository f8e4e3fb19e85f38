#include "Support/Agent/PrivateBus.h"
#include "Tallyfox/Agent/Bus/LocalSocket.h"
#include "Tallyfox/Agent/Bus/SessionBus.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <poll.h>
#include <sys/socket.h>
#include <thread>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";

/// The session bus of this process, until the object is destroyed.
class SessionBusAddress {
public:
    explicit SessionBusAddress(const QByteArray& address)
    {
        qputenv(addressVariable, address);
    }
    SessionBusAddress(const SessionBusAddress&) = delete;
    SessionBusAddress& operator=(const SessionBusAddress&) = delete;
    ~SessionBusAddress()
    {
        qputenv(addressVariable, m_before);
    }

    [[nodiscard]] static bool isKept(const QByteArray& address)
    {
        return qgetenv(addressVariable) == address;
    }

private:
    QByteArray m_before = qgetenv(addressVariable);
};

/// A bus that lets one client in, answers everything with the same bytes, and then repeats others until the client
/// leaves.
class ScriptedBus {
public:
    ScriptedBus(const QByteArray& answer, const QByteArray& repeated = {})
        : m_socket(newLocalSocket())
    {
        const auto address = localAddress(m_folder.filePath(QStringLiteral("bus")).toUtf8());
        EXPECT_EQ(bind(m_socket.get(), address->get(), address->size), 0);
        EXPECT_EQ(listen(m_socket.get(), 8), 0);
        m_thread = std::thread{[this, answer, repeated] { serve(answer, repeated); }};
    }
    ScriptedBus(const ScriptedBus&) = delete;
    ScriptedBus& operator=(const ScriptedBus&) = delete;
    ~ScriptedBus()
    {
        shutdown(m_socket.get(), SHUT_RDWR);
        m_thread.join();
    }

    [[nodiscard]] QByteArray address() const
    {
        return "unix:path=" + m_folder.filePath(QStringLiteral("bus")).toUtf8();
    }

private:
    void serve(const QByteArray& answer, const QByteArray& repeated)
    {
        pollfd waiting{.fd = m_socket.get(), .events = POLLIN, .revents = 0};
        poll(&waiting, 1, 20'000);
        const FileDescriptor client{accept4(m_socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK)};
        const QDeadlineTimer deadline{20s};
        QByteArray received;
        while (client.isOpen() && !received.contains("\r\n") && receiveMore(client, received, deadline)) {
        }
        if (!sendAll(client, "OK 0123456789abcdef0123456789abcdef\r\n", deadline))
            return;
        while (!received.contains("BEGIN\r\n") && receiveMore(client, received, deadline)) {
        }
        if (!sendAll(client, answer, deadline))
            return;
        while (!repeated.isEmpty() && sendAll(client, repeated, deadline)) {
        }
        while (receiveMore(client, received, deadline)) {
        }
    }

    QTemporaryDir m_folder;
    FileDescriptor m_socket;
    std::thread m_thread;
};

/// A message of that type without fields or a body, or whose lengths say so.
QByteArray message(char type, const QByteArray& bodyLength = {4, '\0'}, const QByteArray& fieldsLength = {4, '\0'})
{
    return QByteArray{"l"} + type + QByteArray{"\0\1", 2} + bodyLength + QByteArray{"\1\0\0\0", 4} + fieldsLength;
}

const QByteArray reply = message(2);
const QByteArray error = message(3);
const QByteArray busSignal = message(4);

const QByteArray name = "org.tallyfox.tallyfox";

TEST(SessionBus, ownedNameIsFound)
{
    PrivateBus bus;
    const SessionBusAddress address{bus.address().toUtf8()};
    EXPECT_FALSE(chooseSessionBus(name));
    QDBusConnection agent = bus.connect();
    ASSERT_TRUE(agent.registerService(QString::fromUtf8(name)));
    EXPECT_TRUE(chooseSessionBus(name));
    EXPECT_FALSE(chooseSessionBus(name + ".other"));
    EXPECT_TRUE(SessionBusAddress::isKept(bus.address().toUtf8()));
}

TEST(SessionBus, signalsBetweenTheRepliesAreSkipped)
{
    const ScriptedBus bus{reply + busSignal + busSignal + reply};
    const SessionBusAddress address{bus.address()};
    EXPECT_TRUE(chooseSessionBus(name));
}

TEST(SessionBus, bigEndianBusIsUnderstood)
{
    const QByteArray signal = QByteArray{"B\4\0\1\0\0\0\10\0\0\0\1\0\0\0\5", 16} + QByteArray{16, 'x'};
    const ScriptedBus bus{reply + signal + reply};
    const SessionBusAddress address{bus.address()};
    EXPECT_TRUE(chooseSessionBus(name));
}

TEST(SessionBus, busWithoutAUsefulAnswerToTheNameIsKept)
{
    for (const QByteArray& answer : {error, message(9), QByteArray{"l"}, message(2, "\xFF\xFF\xFF\x7F")}) {
        const ScriptedBus bus{reply + answer};
        const SessionBusAddress address{bus.address()};
        EXPECT_FALSE(chooseSessionBus(name));
        EXPECT_TRUE(SessionBusAddress::isKept(bus.address()));
    }
}

TEST(SessionBus, busThatRefusesHelloIsNotUsed)
{
    for (const QByteArray& answer : {error, QByteArray{}, QByteArray{"l\2"}, QByteArray{64, '\xFF'},
                                     message(2, "\xFF\xFF\xFF\xFF", "\xFF\xFF\xFF\xFF")})
    {
        const ScriptedBus bus{answer};
        const SessionBusAddress address{bus.address()};
        EXPECT_FALSE(chooseSessionBus(name));
        EXPECT_FALSE(SessionBusAddress::isKept(bus.address()));
    }
}

TEST(SessionBus, endlessSignalsAreGivenUp)
{
    const ScriptedBus bus{reply, busSignal.repeated(100)};
    const SessionBusAddress address{bus.address()};
    EXPECT_FALSE(chooseSessionBus(name));
}

} // namespace
} // namespace tallyfox::test
