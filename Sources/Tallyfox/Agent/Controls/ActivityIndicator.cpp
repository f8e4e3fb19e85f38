#include "Tallyfox/Agent/Controls/ActivityIndicator.h"

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QPainter>
#include <QTimerEvent>

namespace tallyfox {

namespace {

constexpr int spokes = 8;
constexpr int timePerSpoke = 100; // milliseconds

} // namespace

ActivityIndicator::ActivityIndicator(const QString& name, QWidget* parent)
    : QProgressBar(parent)
{
    setRange(0, 0);
    setFixedSize(side, side);
    setAccessibleName(name);
}

bool ActivityIndicator::isTurning() const
{
    return m_turn.isActive();
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

/// The spoke at the front is the darkest, those behind it fade.
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
