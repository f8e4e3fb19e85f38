#pragma once

#include "Tallyfox/Agent/StatusItem/StatusItem.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

class QDBusArgument;

namespace tallyfox {

/// One entry as menus are exchanged: `(ia{sv})`.
struct StatusMenuEntry {
    int id = 0;
    QVariantMap properties;

    friend bool operator==(const StatusMenuEntry&, const StatusMenuEntry&) = default;
};

/// An entry and those below it: `(ia{sv}av)`, where each variant holds the same again.
struct StatusMenuLayout {
    StatusMenuEntry entry;
    QList<StatusMenuEntry> children; ///< which have none of their own
};

/// The names of properties that an entry no longer has: `(ias)`.
struct StatusMenuRemoval {
    int id = 0;
    QStringList names;
};

/// What the user did with an entry: `(isvu)`.
struct StatusMenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0; ///< of the panel
};

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuEntry& entry);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuEntry& entry);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuRemoval& removal);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuRemoval& removal);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuEvent& event);

class StatusMenuAdaptor;

/// The status item's menu as an object on the bus, where panels read it and draw it themselves. One level of entries,
/// which are not made before a panel asks for them.
class StatusMenu : public QObject {
    Q_OBJECT

public:
    explicit StatusMenu(const QDBusConnection& bus, QObject* parent = nullptr);
    ~StatusMenu() override;

    /// Where it is on the bus.
    static QString path();

    /// Tells panels what has changed, and nothing when nothing has or no panel has asked yet.
    void setContent(const StatusMenuContent& content);

Q_SIGNALS:
    /// The user has chosen an entry.
    void chosen(StatusMenuAction action);

private:
    friend class StatusMenuAdaptor;

    [[nodiscard]] QList<StatusMenuEntry> makeEntries() const;
    const QList<StatusMenuEntry>& entries();
    [[nodiscard]] bool has(int id);
    bool update();
    bool updateForOpening();
    void choose(int id);

    QDBusConnection m_bus;
    StatusMenuContent m_content;
    QList<StatusMenuEntry> m_entries; ///< as panels know them; empty before a panel has asked
    QElapsedTimer m_age; ///< of `m_entries`
    bool m_isOpened = false; ///< once at least
    StatusMenuAdaptor* m_adaptor;
};

} // namespace tallyfox

Q_DECLARE_METATYPE(tallyfox::StatusMenuEntry)
Q_DECLARE_METATYPE(tallyfox::StatusMenuLayout)
Q_DECLARE_METATYPE(tallyfox::StatusMenuRemoval)
Q_DECLARE_METATYPE(tallyfox::StatusMenuEvent)
