#include "Tallyfox/Agent/Shell/PopoverPosition.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tallyfox {

namespace {

enum class Side { top, bottom, left, right };

/// Half the thickness that a panel which reserves no space may have.
constexpr int clearance = 24;
constexpr int maxPanelThickness = 2 * clearance;

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

/// The side of a panel whose space is not reserved, or not reported, as with several screens. Most panels are at the
/// top or the bottom, with the status items at the end: there a corner counts as top or bottom.
Side sideOfUnknownPanel(const QPoint& click, const QRect& screen)
{
    const auto all = distances(click, screen);
    for (const Side side : {Side::top, Side::bottom, Side::left, Side::right}) {
        if (all.at(static_cast<std::size_t>(side)) < maxPanelThickness)
            return side;
    }
    return nearestSide(click, screen);
}

QPoint clamped(const QPoint& position, const QRect& workArea, const QSize& size)
{
    const auto clamp = [](int value, int low, int high) { return std::max(low, std::min(value, high)); };
    return {clamp(position.x(), workArea.left(), workArea.right() + 1 - size.width()),
            clamp(position.y(), workArea.top(), workArea.bottom() + 1 - size.height())};
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

/// Whether a click is on a panel that reserves its space. Some panels, like Cinnamon's, report the first pixel beside
/// them.
bool isOnReservedPanel(const QPoint& click, const ScreenArea& area)
{
    const QRect& free = area.workArea;
    const QMargins border{free.left() > area.screen.left() ? 1 : 0, free.top() > area.screen.top() ? 1 : 0,
                          free.right() < area.screen.right() ? 1 : 0, free.bottom() < area.screen.bottom() ? 1 : 0};
    return !free.marginsRemoved(border).contains(click);
}

} // namespace

QPoint popoverPosition(const QPoint& click, const ScreenArea& area, const QSize& size)
{
    const bool isOnPanel = isOnReservedPanel(click, area);
    const Side side = isOnPanel ? nearestSide(click, area.workArea) : sideOfUnknownPanel(click, area.screen);
    // The work area begins where the panel ends: clamping puts the popover against the panel.
    return clamped(beside(click, side, isOnPanel ? 0 : clearance, size), area.workArea, size);
}

QPoint popoverPosition(const ScreenArea& area, const QSize& size)
{
    const QRect& free = area.workArea;
    const std::array taken{free.top() - area.screen.top(), area.screen.bottom() - free.bottom(),
                           free.left() - area.screen.left(), area.screen.right() - free.right()};
    const auto* const most = std::max_element(taken.begin(), taken.end());
    if (*most <= 0)
        return clamped({free.right(), free.top() + maxPanelThickness}, free, size);
    const bool isTop = static_cast<Side>(most - taken.begin()) == Side::top;
    const bool isLeft = static_cast<Side>(most - taken.begin()) == Side::left;
    return clamped({isLeft ? free.left() : free.right(), isTop ? free.top() : free.bottom()}, free, size);
}

PopoverAnchor popoverAnchor(std::optional<QPoint> click, const QRect& screen, const QSize& size)
{
    if (!click)
        return {};
    const QPoint position = popoverPosition(*click, {screen, screen}, size) - screen.topLeft();
    const QMargins fromLeft{position.x(), 0, 0, 0};
    const QMargins fromTop{0, position.y(), 0, 0};
    switch (sideOfUnknownPanel(*click, screen)) {
    case Side::top:
        return {Qt::TopEdge | Qt::LeftEdge, fromLeft};
    case Side::bottom:
        return {Qt::BottomEdge | Qt::LeftEdge, fromLeft};
    case Side::left:
        return {Qt::LeftEdge | Qt::TopEdge, fromTop};
    case Side::right:
        return {Qt::RightEdge | Qt::TopEdge, fromTop};
    }
    return {};
}

} // namespace tallyfox
