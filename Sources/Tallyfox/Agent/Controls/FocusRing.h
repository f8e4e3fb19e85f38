#pragma once

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

class QPainter;
class QRectF;
class QWidget;

namespace tallyfox {

/// Whether `widget` has the focus and the user moves it by the keyboard: who clicks knows where they are.
bool showsFocus(const QWidget& widget);

/// Paints the ring that marks the control with the focus along the inside of `frame`.
void paintFocusRing(QPainter& painter, const QRectF& frame, double radius, const QColor& color = Theme::accent());

} // namespace tallyfox
