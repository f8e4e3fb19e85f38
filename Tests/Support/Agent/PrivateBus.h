#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace tallyfox::test {

/// A real session bus, which is ended with the object.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// The value for `DBUS_SESSION_BUS_ADDRESS`; empty when no bus could be started.
    [[nodiscard]] QString address() const
    {
        return m_address;
    }

    /// A new connection to the bus: each is a peer of its own. Closed together with the bus.
    QDBusConnection connect();

    /// Ends the bus while its peers are connected.
    void kill();

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

} // namespace tallyfox::test
