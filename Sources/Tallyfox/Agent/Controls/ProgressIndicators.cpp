#include "Tallyfox/Agent/Controls/ProgressIndicators.h"

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QPainter>
#include <QPainterPath>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace tallyfox {

namespace {

constexpr int thickness = 6;
constexpr double full = 100;

constexpr int spokes = 8;
constexpr int timePerSpoke = 100; // milliseconds

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
    // Clip to the track: a fill of one percent keeps its round end and stays inside.
    painter.setClipPath(track);
    painter.setBrush(m_tint);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(filled, std::min(radius, filled.width() / 2), radius);
}

ActivityIndicator::ActivityIndicator(const QString& name, QWidget* parent)
    : QProgressBar(parent)
{
    setRange(0, 0);
    setFixedSize(side, side);
    setAccessibleName(name);
}

QSize ActivityIndicator::sizeHint() const
{
    return {side, side};
}

QSize ActivityIndicator::minimumSizeHint() const
{
    return sizeHint();
}

void ActivityIndicator::showEvent(QShowEvent* event)
{
    QProgressBar::showEvent(event);
    m_turn.start(timePerSpoke, this);
}

void ActivityIndicator::hideEvent(QHideEvent* event)
{
    QProgressBar::hideEvent(event);
    m_turn.stop();
}

void ActivityIndicator::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_turn.timerId())
        return QProgressBar::timerEvent(event);
    m_step = (m_step + 1) % spokes;
    update();
}

/// The leading spoke is the darkest; those behind it fade.
void ActivityIndicator::paintEvent(QPaintEvent* /*event*/)
{
    constexpr double faintest = 0.15;
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF{rect()}.center());
    painter.rotate(m_step * 360.0 / spokes);
    for (int spoke = 0; spoke < spokes; ++spoke) {
        const double opacity = faintest + (1 - faintest) * spoke / (spokes - 1);
        painter.setPen(QPen{Theme::withOpacity(Theme::muted(), opacity), 1.75, Qt::SolidLine, Qt::RoundCap});
        painter.rotate(360.0 / spokes);
        painter.drawLine(QPointF{0, -3.5}, QPointF{0, -6.5});
    }
}

} // namespace tallyfox
