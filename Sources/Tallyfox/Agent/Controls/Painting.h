#pragma once

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QTransform>

class QPainter;
class QRectF;
class QWidget;

namespace tallyfox {

/// The device pixels under a painter. What is filled between two edges of pixels has no blurred border, at any scale
/// and wherever the widget stands.
class PixelGrid {
public:
    /// For painters that scale and shift; not for ones that rotate.
    explicit PixelGrid(const QPainter& painter);

    [[nodiscard]] double x(double position) const; ///< the nearest edge of a pixel, in the painter's coordinates
    [[nodiscard]] double y(double position) const;
    [[nodiscard]] double pixel() const; ///< one device pixel, in the painter's coordinates
    [[nodiscard]] double pixels(double length) const; ///< a length in device pixels
    /// The thickness of a thin line, in the painter's coordinates: the whole pixels in 1, and the same number of them
    /// wherever the line is.
    [[nodiscard]] double thinLine() const;

private:
    QTransform m_toDevice;
};

/// Whether `widget` has the focus and the user moves it by the keyboard: who clicks knows where they are.
bool showsFocus(const QWidget& widget);

/// Paints the ring that marks the control with the focus along the inside of `frame`.
void paintFocusRing(QPainter& painter, const QRectF& frame, double radius, const QColor& color = Theme::accent());

} // namespace tallyfox
