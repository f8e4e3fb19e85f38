#pragma once

#include "Tallyfox/Agent/StatusItem/StatusItem.h"

#include <QByteArray>
#include <QDBusConnection>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QPoint>
#include <QString>

class QDBusArgument;
class QImage;

namespace tallyfox {

/// One picture as status notifiers exchange it: `(iiay)`.
struct StatusNotifierPixmap {
    int width = 0; ///< pixels
    int height = 0; ///< pixels
    QByteArray argb; ///< rows from the top, 4 bytes a pixel, alpha first, colours not premultiplied

    friend bool operator==(const StatusNotifierPixmap&, const StatusNotifierPixmap&) = default;
};

using StatusNotifierPixmaps = QList<StatusNotifierPixmap>;

/// `(sa(iiay)ss)`.
struct StatusNotifierToolTip {
    QString iconName;
    StatusNotifierPixmaps icon;
    QString title;
    QString text;

    friend bool operator==(const StatusNotifierToolTip&, const StatusNotifierToolTip&) = default;
};

StatusNotifierPixmap statusNotifierPixmap(const QImage& image);

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip);

class StatusNotifierItemAdaptor;

/// The status item as an object on the bus, where panels read it. StatusNotifierWatch makes it known to panels.
class StatusNotifierItem : public QObject {
    Q_OBJECT

public:
    /// `bus` should be a connection of the item's own: panels identify the item by it.
    StatusNotifierItem(const QString& id, const QDBusConnection& bus, QObject* parent = nullptr);
    ~StatusNotifierItem() override;

    [[nodiscard]] const StatusItemContent& content() const
    {
        return m_content;
    }
    /// The picture in all sizes.
    [[nodiscard]] const StatusNotifierPixmaps& icon() const
    {
        return m_icon;
    }
    /// Tells panels what has changed, and nothing when nothing has.
    void setContent(const StatusItemContent& content);
    /// Whether the panel shows the label beside the picture, which is the symbol then instead of the number again.
    void setLabelShown(bool isShown);

Q_SIGNALS:
    /// The user has clicked, with any button; `position` is what the panel reports.
    void activated(QPoint position);
    /// A peer reads the picture: panels that show the item do.
    void pictureRead();
    /// What the panel sends before a click, for the window that the click opens: any bytes.
    void activationTokenProvided(const QByteArray& token);

private:
    [[nodiscard]] QString number() const;
    void updatePicture();

    QDBusConnection m_bus;
    StatusItemContent m_content;
    bool m_isLabelShown = false;
    QString m_shownNumber; ///< in `m_icon`
    StatusNotifierPixmaps m_icon;
    StatusNotifierItemAdaptor* m_adaptor;
};

} // namespace tallyfox

Q_DECLARE_METATYPE(tallyfox::StatusNotifierPixmap)
Q_DECLARE_METATYPE(tallyfox::StatusNotifierToolTip)
