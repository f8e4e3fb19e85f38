#include "Tallyfox/Agent/Shell/PopoverPlacement.h"

#include <algorithm>
#include <array>

namespace tallyfox {

namespace {

enum class Side { top, bottom, left, right };

/// Half of what a panel without reserved room takes at most, seen from a click on it.
constexpr int clearance = 24;
constexpr int thickestPanel = 2 * clearance;

/// How far `point` is from each side of `rect`, in the order of `Side`; negative outside.
std::array<int, 4> distances(const QPoint& point, const QRect& rect)
{
    return {point.y() - rect.top(), rect.bottom() - point.y(), point.x() - rect.left(), rect.right() - point.x()};
}

Side nearestSide(const QPoint& point, const QRect& rect)
{
    const auto all = distances(point, rect);
    return static_cast<Side>(std::min_element(all.begin(), all.end()) - all.begin());
}

/// The side of a panel that reserves no room, or whose room the desktop does not tell of, as it is with several
/// screens. Most panels lie along the top or the bottom, and end in a corner with their status items.
Side sideOfUnknownPanel(const QPoint& click, const QRect& screen)
{
    const auto all = distances(click, screen);
    for (const Side side : {Side::top, Side::bottom, Side::left, Side::right}) {
        if (all.at(static_cast<std::size_t>(side)) < thickestPanel)
            return side;
    }
    return nearestSide(click, screen);
}

QPoint clamped(const QPoint& position, const QRect& workArea, const QSize& size)
{
    const auto inside = [](int value, int low, int high) { return std::max(low, std::min(value, high)); };
    return {inside(position.x(), workArea.left(), workArea.right() + 1 - size.width()),
            inside(position.y(), workArea.top(), workArea.bottom() + 1 - size.height())};
}

/// Beside the click, towards the middle of the screen.
QPoint beside(const QPoint& click, Side side, int distance, const QSize& size)
{
    switch (side) {
    case Side::top:
        return {click.x() - size.width() / 2, click.y() + distance};
    case Side::bottom:
        return {click.x() - size.width() / 2, click.y() + 1 - distance - size.height()};
    case Side::left:
        return {click.x() + distance, click.y() - size.height() / 2};
    case Side::right:
        return {click.x() + 1 - distance - size.width(), click.y() - size.height() / 2};
    }
    return click;
}

} // namespace

QPoint popoverPosition(const QPoint& click, const ScreenArea& area, const QSize& size)
{
    const bool isOnReservedPanel = !area.workArea.contains(click);
    const Side side = isOnReservedPanel ? nearestSide(click, area.workArea) : sideOfUnknownPanel(click, area.screen);
    // A reserved panel ends where the work area begins: clamping puts the popover against it.
    return clamped(beside(click, side, isOnReservedPanel ? 1 : clearance, size), area.workArea, size);
}

std::optional<QPoint> popoverPosition(const ScreenArea& area, const QSize& size)
{
    const std::array taken{area.workArea.top() - area.screen.top(), area.screen.bottom() - area.workArea.bottom(),
                           area.workArea.left() - area.screen.left(), area.screen.right() - area.workArea.right()};
    const auto* const most = std::max_element(taken.begin(), taken.end());
    if (*most <= 0)
        return std::nullopt;
    const bool isTop = static_cast<Side>(most - taken.begin()) == Side::top;
    const bool isLeft = static_cast<Side>(most - taken.begin()) == Side::left;
    return clamped(
        {isLeft ? area.workArea.left() : area.workArea.right(), isTop ? area.workArea.top() : area.workArea.bottom()},
        area.workArea, size);
}

QPoint centredPosition(const ScreenArea& area, const QSize& size)
{
    return clamped(area.workArea.center() - QPoint{size.width() / 2, size.height() / 2}, area.workArea, size);
}

} // namespace tallyfox
