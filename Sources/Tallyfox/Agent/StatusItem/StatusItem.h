#pragma once

#include <QObject>
#include <QPoint>
#include <QString>

#include <memory>
#include <optional>

namespace tallyfox {

/// What the status item shows.
struct StatusItemContent {
    QString title; ///< stands beside the symbol, with its leading space: " 42%"; empty for the symbol alone
    QString accessibilityLabel; ///< what a screen reader and the tooltip say: "Tallyfox, 42 percent used"

    friend bool operator==(const StatusItemContent&, const StatusItemContent&) = default;
};

/// The program's item in the desktop's status area. It appears in whatever panel there is, whenever one appears, until
/// the object ends. Main thread; nothing blocks on a panel.
class StatusItem : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void setContent(const StatusItemContent& content) = 0;

Q_SIGNALS:
    /// The user has clicked the item, with any button. `position` is where, in the desktop's logical coordinates, or
    /// nothing when the panel does not say anything to be believed.
    void activated(std::optional<QPoint> position);
    /// Emitted at most once, when it is certain that this desktop has no place for status items: none 5 s after the
    /// start. The item stays ready for a panel that comes later all the same.
    void isUnavailable();
};

/// The status item as this desktop understands it. `id` is the application's, "org.tallyfox.tallyfox".
std::unique_ptr<StatusItem> makeStatusItem(const QString& id, const QString& title);

} // namespace tallyfox
