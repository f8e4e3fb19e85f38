#pragma once

#include <QTransform>

class QPainter;

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

private:
    QTransform m_toDevice;
};

} // namespace tallyfox
