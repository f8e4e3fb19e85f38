#include "Tallyfox/Agent/StatusItem/TrayIcon.h"

#include "Tallyfox/Agent/StatusItem/StatusIconPainter.h"

#include <QCursor>

namespace tallyfox {

TrayIcon::TrayIcon(const StatusItemContent& content, QObject* parent)
    : QObject{parent}
    , m_number{StatusIconPainter::number(content.title)}
    , m_icon{StatusIconPainter::icon(m_number)}
{
    m_icon.setToolTip(content.accessibilityLabel);
    connect(&m_icon, &QSystemTrayIcon::activated, this, [this] { Q_EMIT activated(position()); });
    m_icon.show();
}

void TrayIcon::setContent(const StatusItemContent& content)
{
    m_icon.setToolTip(content.accessibilityLabel);
    const QString number = StatusIconPainter::number(content.title);
    if (number == m_number)
        return;
    m_number = number;
    m_icon.setIcon(StatusIconPainter::icon(number));
}

QPoint TrayIcon::position() const
{
    const QRect geometry = m_icon.geometry();
    return geometry.isValid() ? geometry.center() : QCursor::pos();
}

} // namespace tallyfox
