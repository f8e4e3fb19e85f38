#include "Tallyfox/Controls/Divider.h"

#include "Tallyfox/TallyfoxTheme.h"

#include <QPainter>

namespace tallyfox {

Divider::Divider(QWidget* parent)
    : QWidget(parent)
{
    setFixedHeight(1);
}

void Divider::paintEvent(QPaintEvent* /*event*/)
{
    QPainter{this}.fillRect(rect(), Theme::line());
}

} // namespace tallyfox
