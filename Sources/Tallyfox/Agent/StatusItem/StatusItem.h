#pragma once

#include <QByteArray>
#include <QObject>
#include <QPoint>
#include <QString>
#include <QStringList>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

class QDBusConnection;

namespace tallyfox {

/// What the status item shows.
struct StatusItemContent {
    std::optional<std::int64_t> percent{}; ///< the combined usage, any number; without one the symbol stands alone

    /// The text beside the symbol: " 42%", with its leading space; empty without a percentage.
    [[nodiscard]] QString shortText() const;
    /// What screen readers and tooltips say: "Tallyfox, 42 percent used"; "Tallyfox" without a percentage.
    [[nodiscard]] QString fullText() const;

    friend bool operator==(const StatusItemContent&, const StatusItemContent&) = default;
};

/// An entry of the status item's menu that does something.
enum class StatusMenuAction { open, refresh, settings, keepAwake };

/// What the status item's menu shows besides its actions.
struct StatusMenuContent {
    /// Makes the lines at the top, always as many; an empty one is hidden. Called when a panel wants to know them, so
    /// that they cost nothing where no panel shows the menu. Panels read a menu long before the user opens it: until
    /// then what takes much memory to make should be left out.
    std::function<QStringList(bool isOpened)> figures{};
    bool keepsAwake = false; ///< whether that action has its check mark
};

/// The program's item in the desktop's status area. It appears in whatever panel there is, whenever one appears, until
/// the object is destroyed. Main thread; nothing blocks on a panel.
class StatusItem : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void setContent(const StatusItemContent& content) = 0;
    /// To be called whenever the lines of figures may have changed. Panels of the X11 tray show no menu.
    virtual void setMenu(const StatusMenuContent& content) = 0;

Q_SIGNALS:
    /// The user has clicked the item, with any button. `position` is where, in the desktop's logical coordinates;
    /// nothing when the panel reports nothing plausible.
    void activated(std::optional<QPoint> position);
    /// The user has chosen an entry of the menu.
    void chosen(StatusMenuAction action);
    /// The desktop's token for the window that the next click opens: any bytes.
    void activationTokenProvided(const QByteArray& token);
    /// Emitted at most once, when a panel shows the item.
    void shown();
    /// Emitted at most once, when it is certain that nothing on this desktop shows the item. It still appears in a
    /// panel that starts later.
    void unavailable();
};

/// The status item of this desktop: on the session bus where a panel reads it there, else as an icon in the X11 tray.
/// Never both. `id` is the application's, "org.tallyfox.tallyfox".
std::unique_ptr<StatusItem> makeStatusItem(const QString& id);

/// The same on `bus`, which should be a connection of the item's own: panels identify an item by its connection.
/// `grace` is the time without any panel, since the last change, after which the item is unavailable: desktops that
/// start the program and the panel together need a few seconds to bring the panel up.
std::unique_ptr<StatusItem> makeStatusItem(const QString& id, const QDBusConnection& bus,
                                           std::chrono::milliseconds grace = std::chrono::seconds{5});

} // namespace tallyfox
