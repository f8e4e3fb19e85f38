#include "Tallyfox/Agent/Controls/Divider.h"

#include "Tallyfox/Agent/Controls/PixelGrid.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tallyfox {

Divider::Divider(QWidget* parent)
    : QWidget(parent)
{
    setFixedHeight(1);
}

void Divider::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    const PixelGrid grid{painter};
    // Whole pixels, and the same number of them wherever it stands: two lines of a window are equally strong.
    painter.fillRect(QRectF{0, grid.y(0), double(width()), std::max(1.0, std::floor(grid.pixels(1))) * grid.pixel()},
                     Theme::line());
}

} // namespace tallyfox
