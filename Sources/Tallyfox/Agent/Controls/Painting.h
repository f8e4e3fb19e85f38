#pragma once

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QTransform>

class QPainter;
class QRectF;
class QWidget;

namespace tallyfox {

/// Snaps coordinates to the device pixels of a painter: fills between snapped edges are sharp at any scale and
/// position.
class PixelGrid {
public:
    /// For painters that only scale and translate.
    explicit PixelGrid(const QPainter& painter);

    [[nodiscard]] double x(double position) const; ///< the nearest pixel edge, in the painter's coordinates
    [[nodiscard]] double y(double position) const;
    [[nodiscard]] double pixel() const; ///< one device pixel, in the painter's coordinates
    [[nodiscard]] double pixels(double length) const; ///< a length in device pixels
    /// The thickness of a thin line, in the painter's coordinates: 1 rounded down to whole device pixels, so that all
    /// lines of a window look equally strong.
    [[nodiscard]] double thinLine() const;

private:
    QTransform m_toDevice;
};

/// Whether to paint a focus ring: `widget` has the focus, and the user navigates by keyboard.
bool showsFocus(const QWidget& widget);

/// Paints a focus ring along the inside of `frame`.
void paintFocusRing(QPainter& painter, const QRectF& frame, double radius, const QColor& color = Theme::accent());

} // namespace tallyfox
