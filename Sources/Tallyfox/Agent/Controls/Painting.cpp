#include "Tallyfox/Agent/Controls/Painting.h"

#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace tallyfox {

PixelGrid::PixelGrid(const QPainter& painter)
    : m_toDevice(painter.deviceTransform())
{ }

double PixelGrid::x(double position) const
{
    return (std::round(position * m_toDevice.m11() + m_toDevice.dx()) - m_toDevice.dx()) / m_toDevice.m11();
}

double PixelGrid::y(double position) const
{
    return (std::round(position * m_toDevice.m22() + m_toDevice.dy()) - m_toDevice.dy()) / m_toDevice.m22();
}

double PixelGrid::pixel() const
{
    return 1 / m_toDevice.m11();
}

double PixelGrid::pixels(double length) const
{
    return length * m_toDevice.m11();
}

double PixelGrid::thinLine() const
{
    return std::max(1.0, std::floor(pixels(1))) * pixel();
}

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
