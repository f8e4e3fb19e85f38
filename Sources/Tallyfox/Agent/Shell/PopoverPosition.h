#pragma once

#include <QMargins>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace tallyfox {

/// A screen, in logical pixels of the whole desktop.
struct ScreenArea {
    QRect screen;
    QRect workArea; ///< what panels leave free; the whole screen where that is not known
};

/// The top left corner of a popover of `size`: next to the panel on which the status item was clicked, centred on the
/// click, inside the work area. It is some pixels away from a click on a panel that reserves no space. A popover larger
/// than the work area keeps its top left corner inside.
QPoint popoverPosition(const QPoint& click, const ScreenArea& area, const QSize& size);

/// The same without a click: at the right or lower end of the panel, where status items usually are. Where no side of
/// the screen is known to have a panel, in the top right corner, below a panel that may be there.
QPoint popoverPosition(const ScreenArea& area, const QSize& size);

/// Where a popover is that the compositor places beside its panels: the edges that it is attached to, and its distance
/// from them.
struct PopoverAnchor {
    Qt::Edges edges = Qt::TopEdge | Qt::RightEdge;
    QMargins margins{};
};

/// The side of the screen on which the status item was clicked; the top right corner without a click.
PopoverAnchor popoverAnchor(std::optional<QPoint> click, const QRect& screen, const QSize& size);

} // namespace tallyfox
