#pragma once

#include "Tallyfox/Agent/StatusItem/StatusItem.h"

#include <QObject>
#include <QPoint>
#include <QSystemTrayIcon>

namespace tallyfox {

/// The status item in an X11 tray (XEmbed). The toolkit puts its icon onto the bus instead where a panel there takes
/// it: make one only while none does.
class TrayIcon : public QObject {
    Q_OBJECT

public:
    explicit TrayIcon(const StatusItemContent& content, QObject* parent = nullptr);

    void setContent(const StatusItemContent& content);

Q_SIGNALS:
    /// The user has clicked, with any button; the position is in logical coordinates.
    void activated(QPoint position);

private:
    [[nodiscard]] QPoint position() const;

    QString m_number;
    QSystemTrayIcon m_icon;
};

} // namespace tallyfox
