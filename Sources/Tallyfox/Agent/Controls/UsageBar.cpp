#include "Tallyfox/Agent/Controls/UsageBar.h"

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace tallyfox {

namespace {

constexpr int thickness = 6;
constexpr double full = 100;

} // namespace

UsageBar::UsageBar(const QColor& tint, QWidget* parent)
    : QProgressBar(parent)
    , m_tint(tint)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setRange(0, static_cast<int>(full));
    setUsedPercent(0);
}

void UsageBar::setUsedPercent(double percent)
{
    m_percent = std::clamp(percent, 0.0, full);
    setValue(static_cast<int>(std::lround(m_percent)));
    update();
}

QSize UsageBar::sizeHint() const
{
    return {thickness * 10, thickness};
}

QSize UsageBar::minimumSizeHint() const
{
    return {thickness, thickness};
}

void UsageBar::paintEvent(QPaintEvent* /*event*/)
{
    constexpr double radius = thickness / 2.0;
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath track;
    track.addRoundedRect(rect(), radius, radius);
    painter.fillPath(track, Theme::surfaceStrong());
    QRectF filled = rect();
    filled.setWidth(filled.width() * m_percent / full);
    if (layoutDirection() == Qt::RightToLeft)
        filled.moveRight(rect().right() + 1);
    // Cut to the track: a single percent is still round at the end and never sticks out of it.
    painter.setClipPath(track);
    painter.setBrush(m_tint);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(filled, std::min(radius, filled.width() / 2), radius);
}

} // namespace tallyfox
