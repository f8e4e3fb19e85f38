#include "Tallyfox/Agent/Controls/Card.h"

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QPainter>

namespace tallyfox {

Card::Card(QWidget* parent)
    : QFrame(parent)
{ }

void Card::paint(QPainter& painter, const QRectF& frame)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Theme::surface());
    painter.setPen(QPen{Theme::withOpacity(Theme::line(), Theme::cardBorderOpacity), 1});
    // The middle of the border lies on the middle of the outermost pixels.
    painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), Theme::cardRadius, Theme::cardRadius);
    painter.restore();
}

void Card::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    paint(painter, rect());
}

} // namespace tallyfox
