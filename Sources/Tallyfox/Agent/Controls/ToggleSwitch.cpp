#include "Tallyfox/Agent/Controls/ToggleSwitch.h"

#include "Tallyfox/Agent/Controls/Painting.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QPainter>
#include <QSignalBlocker>

namespace tallyfox {

namespace {

constexpr QSize trackSize{36, 20};
constexpr double knobInset = 3;

} // namespace

ToggleSwitch::ToggleSwitch(QWidget* parent)
    : QCheckBox(parent)
{
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ToggleSwitch::showChecked(bool isChecked)
{
    const QSignalBlocker blocker{this};
    setChecked(isChecked);
}

QSize ToggleSwitch::sizeHint() const
{
    return trackSize + QSize{2 * ringSpace, 2 * ringSpace};
}

QSize ToggleSwitch::minimumSizeHint() const
{
    return sizeHint();
}

bool ToggleSwitch::hitButton(const QPoint& position) const
{
    return rect().contains(position);
}

void ToggleSwitch::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track = QRectF{rect()}.adjusted(ringSpace, ringSpace, -ringSpace, -ringSpace);
    paintTrack(painter, track);
    paintKnob(painter, track);
    if (showsFocus(*this))
        paintFocusRing(painter, rect(), height() / 2.0);
}

void ToggleSwitch::paintTrack(QPainter& painter, const QRectF& track) const
{
    // When off, the border alone must stand out from the card.
    painter.setBrush(isChecked() ? Theme::accent() : Theme::surfaceStrong());
    painter.setPen(isChecked() ? QPen{Qt::NoPen} : QPen{Theme::muted(), 1});
    const double inset = isChecked() ? 0 : 0.5;
    const QRectF frame = track.adjusted(inset, inset, -inset, -inset);
    painter.drawRoundedRect(frame, frame.height() / 2, frame.height() / 2);
}

void ToggleSwitch::paintKnob(QPainter& painter, const QRectF& track) const
{
    const double side = track.height() - 2 * knobInset;
    const bool isAtRight = isChecked() != (layoutDirection() == Qt::RightToLeft);
    const double left = isAtRight ? track.right() - knobInset - side : track.left() + knobInset;
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? Theme::cream() : Theme::muted());
    painter.drawEllipse(QRectF{left, track.top() + knobInset, side, side});
}

} // namespace tallyfox
