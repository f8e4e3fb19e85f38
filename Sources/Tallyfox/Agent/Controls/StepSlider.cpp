#include "Tallyfox/Agent/Controls/StepSlider.h"

#include "Tallyfox/Agent/Controls/Painting.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace tallyfox {

namespace {

constexpr double knobSide = 16;
constexpr double ringSpace = 3; ///< around the knob
constexpr double reach = knobSide / 2 + ringSpace; ///< from the centre of the knob to the widget's edge, at the ends
constexpr double trackHeight = 4;

} // namespace

StepSlider::StepSlider(int minimum, int maximum, int step, QWidget* parent)
    : QSlider(Qt::Horizontal, parent)
{
    setRange(minimum, maximum);
    setSingleStep(step);
    setPageStep(2 * step);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, &QSlider::valueChanged, this, &StepSlider::snapToStep);
}

void StepSlider::showValue(double value)
{
    const QSignalBlocker blocker{this};
    setValue(nearestStep(value));
}

QSize StepSlider::sizeHint() const
{
    return {static_cast<int>(8 * knobSide), static_cast<int>(2 * reach)};
}

int StepSlider::nearestStep(double value) const
{
    const double steps = std::round((std::clamp<double>(value, minimum(), maximum()) - minimum()) / singleStep());
    return std::min(minimum() + static_cast<int>(steps) * singleStep(), maximum());
}

/// A screen reader can set any value.
void StepSlider::snapToStep(int value)
{
    const int step = nearestStep(value);
    if (step == value)
        Q_EMIT stepped(step);
    else
        setValue(step);
}

bool StepSlider::isMirrored() const
{
    return layoutDirection() == Qt::RightToLeft;
}

int StepSlider::valueAt(double x) const
{
    const double share = (x - reach) / (width() - 2 * reach);
    return nearestStep(minimum() + (isMirrored() ? 1 - share : share) * (maximum() - minimum()));
}

double StepSlider::knobCenter() const
{
    const double share = static_cast<double>(value() - minimum()) / (maximum() - minimum());
    return reach + (isMirrored() ? 1 - share : share) * (width() - 2 * reach);
}

void StepSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    setSliderDown(true);
    setValue(valueAt(event->position().x()));
}

void StepSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (isSliderDown())
        setValue(valueAt(event->position().x()));
}

void StepSlider::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    setSliderDown(false);
    update();
}

/// One notch is one step; the small deltas of a touchpad accumulate.
void StepSlider::wheelEvent(QWheelEvent* event)
{
    constexpr int notch = 120;
    const QPoint turn = event->angleDelta();
    const int sideways = isMirrored() ? -turn.x() : turn.x();
    m_turned += std::abs(turn.y()) >= std::abs(turn.x()) ? turn.y() : sideways;
    const int notches = m_turned / notch;
    m_turned -= notches * notch;
    setValue(value() + notches * singleStep());
    event->accept();
}

void StepSlider::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    const double middle = height() / 2.0;
    const QRectF track{reach, middle - trackHeight / 2, width() - 2 * reach, trackHeight};
    QRectF filled = track;
    isMirrored() ? filled.setLeft(knobCenter()) : filled.setRight(knobCenter());
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::line());
    painter.drawRoundedRect(track, trackHeight / 2, trackHeight / 2);
    painter.setBrush(Theme::accent());
    painter.drawRoundedRect(filled, trackHeight / 2, trackHeight / 2);
    const QPointF center{knobCenter(), middle};
    painter.setPen(QPen{Theme::accent(), 1.5});
    painter.setBrush(isSliderDown() ? Theme::surfaceStrong() : Theme::surface());
    painter.drawEllipse(center, knobSide / 2 - 0.75, knobSide / 2 - 0.75);
    if (showsFocus(*this))
        paintFocusRing(painter, QRectF{center.x() - reach, center.y() - reach, 2 * reach, 2 * reach}, reach);
}

} // namespace tallyfox
