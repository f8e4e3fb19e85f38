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

/// A session bus inside of this process, and everybody on it: it passes on whatever a target wants to have said, by
/// whomever, and keeps what the program says. Its own thread receives, so that the program may wait for it.
///
/// What the program asks the bus itself is answered as a bus does. Only who owns a name is left to the target.
class HostileBus {
public:
    HostileBus();
    ~HostileBus();
    HostileBus(const HostileBus&) = delete;
    HostileBus& operator=(const HostileBus&) = delete;

    /// The program's.
    [[nodiscard]] const QDBusConnection& connection() const
    {
        return m_connection;
    }
    /// The program's unique name.
    static constexpr std::string_view uniqueName = ":1.1";
    static constexpr std::string_view busName = "org.freedesktop.DBus";

    /// Sends to the program; returns the serial under which an answer would come. A descriptor is duplicated.
    std::uint32_t send(WireMessage message, int descriptor = -1);
    /// Waits until neither the program nor the bus has anything to do.
    void settle();
    /// What the program has said since the last time, to others than the bus.
    std::vector<WireMessage> taken();
    /// The signals that the program wants, and how often it has asked for each.
    std::multiset<std::string> matches();
    /// What is answered to whoever wants a name: 1 it is theirs, 3 it is another's; 0 for an error.
    void setNameAnswer(std::uint32_t answer);
    /// Names that are wanted, less those given back.
    int namesHeld();
    /// Ends the connection under the program, which then knows.
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
    std::string m_received; ///< and not understood yet
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
