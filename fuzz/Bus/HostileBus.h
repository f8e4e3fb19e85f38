#pragma once

#include "Bus/WireMessage.h"
#include "TallyfoxCore/Files/FileDescriptor.h"

#include <QDBusConnection>

#include <condition_variable>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace tallyfox {

/// A session bus inside this process, with all its peers: sends what a target wants, from any sender, and keeps what
/// the program sends. It receives in a thread of its own, so that the program may block.
///
/// Calls to the bus are answered as a bus does, except that the target decides who owns a name.
class HostileBus {
public:
    HostileBus();
    ~HostileBus();
    HostileBus(const HostileBus&) = delete;
    HostileBus& operator=(const HostileBus&) = delete;

    /// The program's connection.
    [[nodiscard]] const QDBusConnection& connection() const
    {
        return m_connection;
    }
    /// The program's unique name.
    static constexpr std::string_view uniqueName = ":1.1";
    static constexpr std::string_view busName = "org.freedesktop.DBus";

    /// Sends to the program; returns the serial of the message. A descriptor is duplicated.
    std::uint32_t send(WireMessage message, int descriptor = -1);
    /// Waits until both the program and the bus are idle.
    void settle();
    /// What the program has sent to peers since the last call.
    std::vector<WireMessage> taken();
    /// The match rules of the program, as often as it has added each.
    std::multiset<std::string> matches();
    /// The reply to RequestName: 1 it is theirs, 3 it is another's; 0 for an error.
    void setNameAnswer(std::uint32_t answer);
    /// Names that are requested, less those released.
    int namesHeld();
    /// Closes the connection, and waits until the program has noticed.
    void hangUp();
    [[nodiscard]] bool hasHungUp() const
    {
        return m_hasHungUp;
    }

private:
    void serve();
    bool letIn();
    void receive();
    void take(WireMessage message);
    bool answersItself(const WireMessage& message);
    void answer(const WireMessage& call, std::string_view signature, const std::string& body);
    void passEvents();
    void ping();

    FileDescriptor m_listener;
    FileDescriptor m_peer;
    std::string m_received; ///< and not decoded yet
    std::mutex m_sending;
    std::uint32_t m_lastSerial = 0;
    std::mutex m_access; ///< to all of the following
    std::condition_variable m_ponged;
    std::uint32_t m_lastPong = 0;
    bool m_hasEnded = false;
    std::uint32_t m_nameAnswer = 1;
    int m_namesHeld = 0;
    std::multiset<std::string> m_matches;
    std::vector<WireMessage> m_taken;
    std::thread m_server;
    bool m_hasHungUp = false;
    QString m_name;
    QDBusConnection m_connection;
};

} // namespace tallyfox
