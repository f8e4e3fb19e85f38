#pragma once

#include <QPoint>
#include <QRect>

#include <optional>
#include <vector>

namespace tallyfox {

/// A screen, as far as positions are concerned.
struct ScaledScreen {
    QRect logical; ///< where it is in logical coordinates; its top left corner is the same in device pixels
    double scale = 1; ///< device pixels in a logical one
};

/// Where the user has clicked, in logical coordinates, when a panel reports `reported`. Panels report device pixels or
/// logical ones, the pointer or the icon's corner; some report the position inside of the panel, or nothing but zeros.
/// So the report counts when it is an icon's length from the pointer at most, in either measure; else the pointer
/// does. Where the pointer is unknown, as under Wayland, a report that is on a screen must do; zeros are none.
std::optional<QPoint> clickPosition(QPoint reported, std::optional<QPoint> pointer,
                                    const std::vector<ScaledScreen>& screens);

/// The same with this desktop's pointer and screens.
std::optional<QPoint> clickPosition(QPoint reported);

} // namespace tallyfox
