#pragma once

#include <QDBusConnection>

namespace tallyfox {

/// A connection to the session bus that is closed, with whatever was registered on it, when the object is destroyed.
class OwnConnection {
public:
    /// `name` is one that no other connection of this process has.
    explicit OwnConnection(const QString& name)
        : m_bus{QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)}
    { }
    ~OwnConnection()
    {
        QDBusConnection::disconnectFromBus(m_bus.name());
    }
    OwnConnection(const OwnConnection&) = delete;
    OwnConnection& operator=(const OwnConnection&) = delete;

    [[nodiscard]] const QDBusConnection& bus() const
    {
        return m_bus;
    }

private:
    QDBusConnection m_bus;
};

} // namespace tallyfox
