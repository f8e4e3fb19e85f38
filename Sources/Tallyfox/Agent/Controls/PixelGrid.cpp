#include "Tallyfox/Agent/Controls/PixelGrid.h"

#include <QPainter>

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

} // namespace tallyfox
