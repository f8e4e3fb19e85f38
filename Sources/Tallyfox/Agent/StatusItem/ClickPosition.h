#pragma once

#include <QPoint>
#include <QRect>

#include <optional>
#include <vector>

namespace tallyfox {

/// A screen's geometry, in logical coordinates.
struct ScaledScreen {
    QRect logical; ///< its top left corner is the same in device pixels
    QRect workArea; ///< what panels leave free; the whole screen where that is not known
    double scale = 1; ///< device pixels in a logical one
};

/// Where the user has clicked the status item, in logical coordinates, when a panel reports `reported`; nothing when
/// that cannot be known. `pointer` is the pointer's position, unless it is unknown, as under Wayland.
///
/// Panels report device or logical pixels, the pointer or the icon's corner; some report the position inside the panel
/// or the item, or zeros. So the pointer decides where it is known. A position counts only if a panel may be there: off
/// the work area, or close to an edge of the screen that has a panel, as far as that is known.
std::optional<QPoint> clickPosition(QPoint reported, std::optional<QPoint> pointer,
                                    const std::vector<ScaledScreen>& screens);

/// The same with this desktop's pointer and screens.
std::optional<QPoint> clickPosition(QPoint reported);

} // namespace tallyfox
