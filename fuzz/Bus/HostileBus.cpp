#include "Bus/HostileBus.h"

#include "Bus/WireWriter.h"
#include "FuzzSupport.h"
#include "Tallyfox/Agent/Bus/LocalSocket.h"
#include "Tallyfox/Agent/Bus/ServiceCall.h"

#include <QtCore/qtestsupport_core.h>

#include <array>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace tallyfox {

namespace {

constexpr int hangGuard = 5000; ///< ms
constexpr int roundsOfEvents = 4; ///< an event may queue another, and so on

std::string textBody(std::string_view text)
{
    WireWriter writer;
    writer.text(text);
    return writer.bytes();
}

std::string numberBody(std::uint32_t number)
{
    WireWriter writer;
    writer.integer(number);
    return writer.bytes();
}

/// An abstract address leaves no file behind.
QByteArray newAddress()
{
    static int count = 0;
    return "tallyfox-fuzz-" + QByteArray::number(getpid()) + '-' + QByteArray::number(++count);
}

FileDescriptor listenAt(const QByteArray& address)
{
    FileDescriptor socket{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    const auto local = localAddress(address, true);
    require(local && bind(socket.get(), local->get(), local->size) == 0 && listen(socket.get(), 1) == 0,
            "the bus can be reached");
    return socket;
}

void sendBytes(int socket, std::string_view bytes, int descriptor = -1)
{
    iovec part{const_cast<char*>(bytes.data()), bytes.size()};
    msghdr header{};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    if (descriptor >= 0) {
        header.msg_control = control.data();
        header.msg_controllen = control.size();
        cmsghdr* const attached = CMSG_FIRSTHDR(&header);
        attached->cmsg_level = SOL_SOCKET;
        attached->cmsg_type = SCM_RIGHTS;
        attached->cmsg_len = CMSG_LEN(sizeof(int));
        std::memcpy(CMSG_DATA(attached), &descriptor, sizeof(int));
    }
    while (part.iov_len > 0) {
        const ssize_t count = sendmsg(socket, &header, MSG_NOSIGNAL);
        if (count <= 0)
            return; // the program has closed the connection, and will not reply
        part.iov_base = static_cast<char*>(part.iov_base) + count;
        part.iov_len -= static_cast<std::size_t>(count);
        header.msg_control = nullptr;
        header.msg_controllen = 0;
    }
}

} // namespace

HostileBus::HostileBus()
    : m_connection(QString{})
{
    const QByteArray address = newAddress();
    m_listener = listenAt(address);
    m_server = std::thread{[this] { serve(); }};
    m_name = QString::fromLatin1(address);
    m_connection = QDBusConnection::connectToBus(QStringLiteral("unix:abstract=") + m_name, m_name);
    require(m_connection.isConnected(), "the program can connect");
    settle();
}

HostileBus::~HostileBus()
{
    m_connection = QDBusConnection{QString{}};
    QDBusConnection::disconnectFromBus(m_name);
    shutdown(m_peer.get(), SHUT_RDWR);
    m_server.join();
}

void HostileBus::serve()
{
    m_peer = FileDescriptor{accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC)};
    if (letIn())
        receive();
    const std::lock_guard lock{m_access};
    m_hasEnded = true;
    m_ponged.notify_all();
}

/// Accepts any credentials: they are sent by the library.
bool HostileBus::letIn()
{
    std::string line;
    for (char byte = 0; read(m_peer.get(), &byte, 1) == 1;) {
        line += byte;
        if (byte != '\n')
            continue;
        if (line.find("AUTH EXTERNAL ") != std::string::npos)
            sendBytes(m_peer.get(), "OK 0123456789abcdef0123456789abcdef\r\n");
        else if (line == "NEGOTIATE_UNIX_FD\r\n")
            sendBytes(m_peer.get(), "AGREE_UNIX_FD\r\n");
        else if (line == "BEGIN\r\n")
            return true;
        line.clear();
    }
    return false;
}

void HostileBus::receive()
{
    std::array<char, 65'536> part;
    for (ssize_t count = 0; (count = recv(m_peer.get(), part.data(), part.size(), 0)) > 0;) {
        m_received.append(part.data(), static_cast<std::size_t>(count));
        for (auto length = wireLength(m_received); length && *length <= m_received.size();
             length = wireLength(m_received)) {
            take(decoded(std::string_view{m_received}.substr(0, *length)));
            m_received.erase(0, *length);
        }
    }
}

void HostileBus::take(WireMessage message)
{
    const std::lock_guard lock{m_access};
    if (message.kind == WireMessage::Kind::call && answersItself(message))
        return;
    if (message.kind == WireMessage::Kind::answer && message.body.empty()) {
        m_lastPong = message.answered;
        m_ponged.notify_all();
    }
    m_taken.push_back(std::move(message));
}

bool HostileBus::answersItself(const WireMessage& message)
{
    if (message.destination != busName || (message.member == "GetNameOwner" && message.textAt(0) != busName))
        return false;
    if (message.member == "Hello" || message.member == "GetNameOwner") {
        answer(message, "s", textBody(message.member == "Hello" ? uniqueName : busName));
    } else if (message.member == "AddMatch") {
        m_matches.insert(message.textAt(0));
        answer(message, "", {});
    } else if (message.member == "RemoveMatch") {
        // The library also removes rules it has never added, which a bus ignores.
        if (const auto found = m_matches.find(message.textAt(0)); found != m_matches.end())
            m_matches.erase(found);
        answer(message, "", {});
    } else if (message.member == "RequestName" || message.member == "ReleaseName") {
        if (message.member == "ReleaseName")
            --m_namesHeld;
        else if (m_nameAnswer == 1)
            ++m_namesHeld;
        answer(message, m_nameAnswer == 0 ? "s" : "u", m_nameAnswer == 0 ? textBody("no") : numberBody(m_nameAnswer));
    } else {
        require(false, "the program calls nothing else on the bus");
    }
    return true;
}

void HostileBus::answer(const WireMessage& call, std::string_view signature, const std::string& body)
{
    if (!call.wantsAnswer())
        return;
    WireMessage message{.kind = WireMessage::Kind::answer, .answered = call.serial};
    message.sender = busName;
    message.signature = signature;
    message.body = body;
    send(std::move(message));
}

std::uint32_t HostileBus::send(WireMessage message, int descriptor)
{
    const std::lock_guard lock{m_sending};
    message.serial = ++m_lastSerial;
    message.destination = uniqueName;
    message.descriptors = descriptor >= 0 ? 1 : 0;
    sendBytes(m_peer.get(), encoded(message), descriptor);
    return message.serial;
}

/// The library replies itself, and in order: it has then handled all earlier messages, and sent all its own.
void HostileBus::ping()
{
    WireMessage message{.path = "/", .interface = "org.freedesktop.DBus.Peer", .member = "Ping"};
    message.sender = ":1.0";
    const std::uint32_t serial = send(std::move(message));
    std::unique_lock lock{m_access};
    const bool came = m_ponged.wait_for(lock, std::chrono::milliseconds{hangGuard},
                                        [&] { return m_lastPong == serial || m_hasEnded; });
    require(came && !m_hasEnded, "the connection is alive");
    std::erase_if(m_taken, [&](const WireMessage& one) { return one.isAnswer() && one.answered == serial; });
}

void HostileBus::passEvents()
{
    for (int round = 0; round < roundsOfEvents; ++round) {
        bool isDone = false;
        QObject marker;
        QMetaObject::invokeMethod(
            &marker, [&isDone] { isDone = true; }, Qt::QueuedConnection);
        require(QTest::qWaitFor([&isDone] { return isDone; }, hangGuard), "events are handled");
    }
}

void HostileBus::settle()
{
    if (!m_hasHungUp)
        ping();
    passEvents();
    if (!m_hasHungUp)
        ping();
}

std::vector<WireMessage> HostileBus::taken()
{
    const std::lock_guard lock{m_access};
    return std::exchange(m_taken, {});
}

std::multiset<std::string> HostileBus::matches()
{
    const std::lock_guard lock{m_access};
    return m_matches;
}

void HostileBus::setNameAnswer(std::uint32_t answer)
{
    const std::lock_guard lock{m_access};
    m_nameAnswer = answer;
}

int HostileBus::namesHeld()
{
    const std::lock_guard lock{m_access};
    return m_namesHeld;
}

void HostileBus::hangUp()
{
    m_hasHungUp = true;
    const BusDisconnectWatcher watcher{m_connection};
    bool isKnown = false;
    QObject::connect(&watcher, &BusDisconnectWatcher::disconnected, &watcher, [&isKnown] { isKnown = true; });
    shutdown(m_peer.get(), SHUT_RDWR);
    require(QTest::qWaitFor([&isKnown] { return isKnown; }, hangGuard), "the program notices the lost connection");
    passEvents();
}

} // namespace tallyfox
