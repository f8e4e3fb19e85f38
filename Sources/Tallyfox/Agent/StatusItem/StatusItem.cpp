#include "Tallyfox/Agent/StatusItem/StatusItem.h"

#include "Tallyfox/Agent/StatusItem/PanelStatusItem.h"

namespace tallyfox {

namespace {

/// A connection to the session bus that ends with the object, and whatever was registered on it.
class OwnConnection {
public:
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

/// The connection is a base class so that it ends after the item.
class SessionStatusItem : private OwnConnection, public PanelStatusItem {
public:
    SessionStatusItem(const QString& id, const QString& title)
        : OwnConnection{id + QStringLiteral(".status-item")}
        , PanelStatusItem{id, {{}, title}, bus()}
    { }
};

} // namespace

std::unique_ptr<StatusItem> makeStatusItem(const QString& id, const QString& title)
{
    return std::make_unique<SessionStatusItem>(id, title);
}

} // namespace tallyfox
