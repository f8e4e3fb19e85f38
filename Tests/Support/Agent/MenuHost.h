#pragma once

#include "Tallyfox/Agent/StatusItem/StatusMenu.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>

#include <map>
#include <string>

namespace tallyfox::test {

/// A panel that shows the status item's menu: a peer with a connection of its own, which checks the types of all that
/// it gets.
class MenuHost : public QObject {
    Q_OBJECT

public:
    /// `menu` is the unique name of the peer with the menu.
    MenuHost(const QDBusConnection& bus, const QString& menu);

    static inline const QString interface = QStringLiteral("com.canonical.dbusmenu");
    static inline const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");

    QDBusMessage message(const char* member, const QVariantList& arguments = {}, const QString& name = interface) const;
    QDBusPendingCall start(const QDBusMessage& call) const
    {
        return m_bus.asyncCall(call);
    }
    /// The reply to a call, while the menu's event loop runs.
    QDBusMessage call(const char* member, const QVariantList& arguments = {}, const QString& name = interface) const;

    StatusMenuLayout layout(int parent = 0, int depth = -1, const QStringList& names = {}) const;
    /// The labels of all entries that have one and are visible, under their ids.
    using Labels = std::map<int, std::string>;
    Labels labels() const;
    QVariant property(int id, const char* name) const;

    /// The entries in each signal of changed properties.
    QList<QList<StatusMenuEntry>> updates;

public Q_SLOTS:
    void handleUpdate(const QDBusMessage& signal);

private:
    QDBusConnection m_bus;
    QString m_menu;
};

} // namespace tallyfox::test
