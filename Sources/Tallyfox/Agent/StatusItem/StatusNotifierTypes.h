#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QString>

class QDBusArgument;
class QImage;

namespace tallyfox {

/// One picture as status notifiers exchange it: `(iiay)`.
struct StatusNotifierPixmap {
    int width = 0; ///< pixels
    int height = 0; ///< pixels
    QByteArray argb; ///< rows from the top, 4 bytes a pixel, alpha first, colours not multiplied by it

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

/// Makes the types known to the toolkit's bus library; more than once does no harm.
void registerStatusNotifierTypes();

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip);

} // namespace tallyfox

Q_DECLARE_METATYPE(tallyfox::StatusNotifierPixmap)
Q_DECLARE_METATYPE(tallyfox::StatusNotifierToolTip)
