#include "Tallyfox/Agent/StatusItem/StatusMenu.h"

#include <QCoreApplication>
#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <utility>

namespace tallyfox {

namespace {

constexpr int rootId = 0;
constexpr int separatorId = 1;
constexpr int firstActionId = 2; // in the order of `actions`
constexpr int firstFigureId = 100;

/// Panels ask for entries of this menu, all at once at most. Longer lists are refused: answers are as long as they are.
constexpr qsizetype maxListLength = 256;

/// A menu that is asked for more often is not made again: its times are given in minutes at best.
constexpr qint64 maxAge = 1000; // milliseconds

constexpr std::array actions{StatusMenuAction::open, StatusMenuAction::refresh, StatusMenuAction::settings,
                             StatusMenuAction::keepAwake};

QString labelProperty()
{
    return QStringLiteral("label");
}

QString label(StatusMenuAction action)
{
    switch (action) {
    case StatusMenuAction::open:
        return QCoreApplication::translate("StatusMenu", "Open Tallyfox");
    case StatusMenuAction::refresh:
        return QCoreApplication::translate("StatusMenu", "Refresh");
    case StatusMenuAction::settings:
        return QCoreApplication::translate("StatusMenu", "Settings…");
    case StatusMenuAction::keepAwake:
        break;
    }
    return QCoreApplication::translate("tallyfox::PopoverView", "Keep Mac Awake"); // named as in the popover
}

/// A line without text is hidden instead of left out: some panels draw an open menu wrong when its layout changes.
StatusMenuEntry figureEntry(int line, const QString& text)
{
    return {
        firstFigureId + line,
        {{labelProperty(), text}, {QStringLiteral("enabled"), false}, {QStringLiteral("visible"), !text.isEmpty()}}};
}

StatusMenuEntry actionEntry(StatusMenuAction action, bool keepsAwake)
{
    StatusMenuEntry entry{firstActionId + static_cast<int>(action), {{labelProperty(), label(action)}}};
    if (action == StatusMenuAction::keepAwake) {
        entry.properties[QStringLiteral("toggle-type")] = QStringLiteral("checkmark");
        entry.properties[QStringLiteral("toggle-state")] = keepsAwake ? 1 : 0;
    }
    return entry;
}

StatusMenuEntry rootEntry()
{
    return {rootId, {{QStringLiteral("children-display"), QStringLiteral("submenu")}}};
}

/// All properties when no names are given.
StatusMenuEntry selected(StatusMenuEntry entry, const QStringList& names)
{
    if (!names.isEmpty())
        entry.properties.removeIf([&names](const auto& property) { return !names.contains(property.key()); });
    return entry;
}

QDBusArgument& writeMembers(QDBusArgument& argument, const StatusMenuEntry& entry)
{
    return argument << entry.id << entry.properties;
}

void registerStatusMenuTypes()
{
    qDBusRegisterMetaType<StatusMenuEntry>();
    qDBusRegisterMetaType<QList<StatusMenuEntry>>();
    qDBusRegisterMetaType<StatusMenuLayout>();
    qDBusRegisterMetaType<StatusMenuRemoval>();
    qDBusRegisterMetaType<QList<StatusMenuRemoval>>();
    qDBusRegisterMetaType<StatusMenuEvent>();
    qDBusRegisterMetaType<QList<StatusMenuEvent>>();
}

} // namespace

/// The interface of a menu, its members named as they are on the bus. There is no LayoutUpdated: the layout is
/// constant.
class StatusMenuAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version MEMBER m_version CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status MEMBER m_status CONSTANT)
    Q_PROPERTY(QStringList IconThemePath MEMBER m_iconThemePath CONSTANT)

public:
    explicit StatusMenuAdaptor(StatusMenu& menu)
        : QDBusAbstractAdaptor{&menu}
        , m_menu{menu}
    { }

    [[nodiscard]] static QString textDirection()
    {
        return QGuiApplication::layoutDirection() == Qt::RightToLeft ? QStringLiteral("rtl") : QStringLiteral("ltr");
    }

public Q_SLOTS:
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames, const QDBusMessage& call,
                   tallyfox::StatusMenuLayout& layout)
    {
        if (recursionDepth < -1 || propertyNames.size() > maxListLength || !m_menu.has(parentId)) {
            refuse(call);
            return 0;
        }
        layout.entry = selected(find(parentId), propertyNames);
        if (parentId == rootId && recursionDepth != 0) {
            for (const StatusMenuEntry& entry : m_menu.entries())
                layout.children += selected(entry, propertyNames);
        }
        return 1; // the revision of the layout
    }

    /// Of all entries when no ids are given. Unknown ids are left out.
    QList<tallyfox::StatusMenuEntry> GetGroupProperties(const QList<int>& ids, const QStringList& propertyNames,
                                                        const QDBusMessage& call)
    {
        QList<StatusMenuEntry> found;
        if (ids.size() > maxListLength || propertyNames.size() > maxListLength) {
            refuse(call);
            return found;
        }
        for (const StatusMenuEntry& entry : QList{rootEntry()} + m_menu.entries()) {
            if (ids.isEmpty() || ids.contains(entry.id))
                found += selected(entry, propertyNames);
        }
        return found;
    }

    QDBusVariant GetProperty(int id, const QString& name, const QDBusMessage& call)
    {
        const QVariant value = m_menu.has(id) ? find(id).properties.value(name) : QVariant{};
        if (!value.isValid())
            refuse(call);
        return QDBusVariant{value};
    }

    void Event(int id, const QString& eventId, const QDBusVariant& /*data*/, uint /*timestamp*/,
               const QDBusMessage& call)
    {
        if (!m_menu.has(id))
            refuse(call);
        else
            handle(id, eventId);
    }

    /// Returns the unknown ids.
    QList<int> EventGroup(const QList<tallyfox::StatusMenuEvent>& events, const QDBusMessage& call)
    {
        QList<int> unknown;
        if (events.size() > maxListLength) {
            refuse(call);
            return unknown;
        }
        for (const StatusMenuEvent& event : events) {
            if (m_menu.has(event.id))
                handle(event.id, event.name);
            else
                unknown += event.id;
        }
        return unknown;
    }

    /// Returns whether something has changed.
    bool AboutToShow(int id, const QDBusMessage& call)
    {
        if (m_menu.has(id))
            return id == rootId && m_menu.updateForOpening();
        refuse(call);
        return false;
    }

    /// Returns the menus in which something has changed, and the unknown ids.
    QList<int> AboutToShowGroup(const QList<int>& ids, const QDBusMessage& call, QList<int>& unknown)
    {
        QList<int> changed;
        if (ids.size() > maxListLength) {
            refuse(call);
            return changed;
        }
        for (const int id : ids) {
            if (!m_menu.has(id))
                unknown += id;
            else if (id == rootId && m_menu.updateForOpening())
                changed += id;
        }
        return changed;
    }

Q_SIGNALS:
    void ItemsPropertiesUpdated(const QList<tallyfox::StatusMenuEntry>& updated,
                                const QList<tallyfox::StatusMenuRemoval>& removed);

private:
    [[nodiscard]] StatusMenuEntry find(int id) const
    {
        if (id == rootId)
            return rootEntry();
        return *std::ranges::find(m_menu.entries(), id, &StatusMenuEntry::id);
    }
    void handle(int id, const QString& eventId)
    {
        if (eventId == QStringLiteral("clicked"))
            m_menu.choose(id);
        else if (id == rootId && eventId == QStringLiteral("opened")) // by a panel that has not announced it
            m_menu.updateForOpening();
    }
    void refuse(const QDBusMessage& call)
    {
        call.setDelayedReply(true); // instead of the return value
        if (call.isReplyRequired())
            m_menu.m_bus.send(call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("no such entry")));
    }

    StatusMenu& m_menu;
    uint m_version = 3;
    QString m_status = QStringLiteral("normal");
    QStringList m_iconThemePath;
};

StatusMenu::StatusMenu(const QDBusConnection& bus, QObject* parent)
    : QObject{parent}
    , m_bus{bus}
    , m_adaptor{new StatusMenuAdaptor{*this}}
{
    registerStatusMenuTypes();
    m_bus.registerObject(path(), this, QDBusConnection::ExportAdaptors);
}

StatusMenu::~StatusMenu()
{
    m_bus.unregisterObject(path());
}

QString StatusMenu::path()
{
    return QStringLiteral("/MenuBar");
}

void StatusMenu::setContent(const StatusMenuContent& content)
{
    m_content = content;
    if (!m_entries.isEmpty())
        update();
}

QList<StatusMenuEntry> StatusMenu::makeEntries() const
{
    QList<StatusMenuEntry> entries;
    const QStringList figures = m_content.figures ? m_content.figures(m_isOpened) : QStringList{};
    for (int line = 0; line < figures.size(); ++line)
        entries += figureEntry(line, figures[line]);
    entries += {separatorId, {{QStringLiteral("type"), QStringLiteral("separator")}}};
    for (const StatusMenuAction action : actions)
        entries += actionEntry(action, m_content.keepsAwake);
    return entries;
}

const QList<StatusMenuEntry>& StatusMenu::entries()
{
    if (m_entries.isEmpty()) {
        m_entries = makeEntries();
        m_age.start();
    }
    return m_entries;
}

bool StatusMenu::has(int id)
{
    return id == rootId || std::ranges::find(entries(), id, &StatusMenuEntry::id) != entries().end();
}

/// Returns whether something has changed.
bool StatusMenu::update()
{
    const QList<StatusMenuEntry> before = std::exchange(m_entries, makeEntries());
    m_age.start();
    QList<StatusMenuEntry> changed;
    std::ranges::copy_if(m_entries, std::back_inserter(changed),
                         [&before](const StatusMenuEntry& entry) { return !before.contains(entry); });
    if (!changed.isEmpty())
        Q_EMIT m_adaptor->ItemsPropertiesUpdated(changed, {});
    return !changed.isEmpty();
}

/// The first opening adds what is left out before; later, the time to the reset passes without a publication.
bool StatusMenu::updateForOpening()
{
    const bool isOld = !std::exchange(m_isOpened, true) || m_age.hasExpired(maxAge);
    return !m_entries.isEmpty() && isOld && update();
}

void StatusMenu::choose(int id)
{
    const auto* const action =
        std::ranges::find(actions, id, [](StatusMenuAction one) { return firstActionId + static_cast<int>(one); });
    if (action != actions.end())
        Q_EMIT chosen(*action);
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuEntry& entry)
{
    argument.beginStructure();
    writeMembers(argument, entry);
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuEntry& entry)
{
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuLayout& layout)
{
    argument.beginStructure();
    writeMembers(argument, layout.entry);
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const StatusMenuEntry& child : layout.children)
        argument << QDBusVariant{QVariant::fromValue(StatusMenuLayout{child, {}})};
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuLayout& layout)
{
    argument.beginStructure();
    argument >> layout.entry.id >> layout.entry.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        layout.children += qdbus_cast<StatusMenuLayout>(child.variant()).entry;
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuRemoval& removal)
{
    argument.beginStructure();
    argument << removal.id << removal.names;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuRemoval& removal)
{
    argument.beginStructure();
    argument >> removal.id >> removal.names;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuEvent& event)
{
    argument.beginStructure();
    argument << event.id << event.name << event.data << event.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuEvent& event)
{
    argument.beginStructure();
    argument >> event.id >> event.name >> event.data >> event.timestamp;
    argument.endStructure();
    return argument;
}

} // namespace tallyfox

#include "StatusMenu.moc"
