#include "Tallyfox/Agent/Controls/FocusRing.h"

#include <QPainter>
#include <QWidget>

namespace tallyfox {

bool showsFocus(const QWidget& widget)
{
    return widget.hasFocus() && widget.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}

void paintFocusRing(QPainter& painter, const QRectF& frame, double radius, const QColor& color)
{
    constexpr double width = 2;
    constexpr double inset = width / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen{color, width});
    painter.drawRoundedRect(frame.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    painter.restore();
}

} // namespace tallyfox
