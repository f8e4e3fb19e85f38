#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace tallyfox {

/// A screen, in logical pixels of the whole desktop.
struct ScreenArea {
    QRect screen;
    QRect workArea; ///< what panels leave free
};

/// Where the top left corner of a popover of `size` goes: beside the panel at the side where the status item was
/// clicked, centred on the click, and inside of the work area. A panel that reserves no room is kept clear of by
/// some pixels. A popover larger than the work area keeps its top left corner inside.
QPoint popoverPosition(const QPoint& click, const ScreenArea& area, const QSize& size);

/// The same without a click: at the end of the panel where items usually stand, which is the right or the lower one;
/// nothing when no side of the screen is taken by a panel.
std::optional<QPoint> popoverPosition(const ScreenArea& area, const QSize& size);

/// The middle of the work area.
QPoint centredPosition(const ScreenArea& area, const QSize& size);

} // namespace tallyfox
