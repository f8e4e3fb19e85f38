#include "Tallyfox/Agent/StatusItem/ClickPosition.h"

#include "Tallyfox/Agent/Desktop/Display.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <array>

namespace tallyfox {

namespace {

constexpr int iconLength = 64; // logical pixels; panels are rarely thicker

std::optional<QPoint> fromDevicePixels(QPoint position, const std::vector<ScaledScreen>& screens)
{
    for (const ScaledScreen& screen : screens) {
        const QPoint origin = screen.logical.topLeft();
        const QRect inPixels{origin, (QSizeF{screen.logical.size()} * screen.scale).toSize()};
        if (inPixels.contains(position))
            return origin + (QPointF{position - origin} / screen.scale).toPoint();
    }
    return std::nullopt;
}

/// Cannot overflow, whatever position a panel reports.
bool isNear(QPoint position, QPoint pointer)
{
    const QPoint reach{iconLength, iconLength};
    return QRect{pointer - reach, pointer + reach}.contains(position);
}

/// Whether the numbers may be relative to the item. An item in the very corner of the desktop is rare.
bool mayBeItemLocal(QPoint reported)
{
    return QRect{0, 0, iconLength, iconLength}.contains(reported);
}

/// Whether a panel of this screen may be there.
bool isOnPanel(QPoint position, const ScaledScreen& screen)
{
    const QRect& whole = screen.logical;
    const QRect& free = screen.workArea;
    if (!whole.contains(position) || !free.contains(position))
        return whole.contains(position);
    struct Edge {
        int taken; // by a panel that is known
        int distance;
    };
    const std::array edges{Edge{free.top() - whole.top(), position.y() - whole.top()},
                           Edge{whole.bottom() - free.bottom(), whole.bottom() - position.y()},
                           Edge{free.left() - whole.left(), position.x() - whole.left()},
                           Edge{whole.right() - free.right(), whole.right() - position.x()}};
    return std::any_of(edges.begin(), edges.end(), [&](const Edge& edge) {
        return edge.distance < iconLength && (edge.taken > 0 || free == whole);
    });
}

} // namespace

std::optional<QPoint> clickPosition(QPoint reported, std::optional<QPoint> pointer,
                                    const std::vector<ScaledScreen>& screens)
{
    const std::optional<QPoint> logical = fromDevicePixels(reported, screens);
    std::vector<QPoint> candidates; // the best one first
    if (pointer) {
        if (logical && isNear(*logical, *pointer))
            candidates.push_back(*logical);
        if (isNear(reported, *pointer))
            candidates.push_back(reported);
        candidates.push_back(*pointer);
    }
    if (!mayBeItemLocal(reported)) {
        if (logical)
            candidates.push_back(*logical);
        candidates.push_back(reported);
    }
    const auto found = std::find_if(candidates.begin(), candidates.end(), [&](QPoint candidate) {
        return std::any_of(screens.begin(), screens.end(),
                           [&](const ScaledScreen& screen) { return isOnPanel(candidate, screen); });
    });
    return found != candidates.end() ? std::optional{*found} : std::nullopt;
}

std::optional<QPoint> clickPosition(QPoint reported)
{
    // The pixels of all screens of a Wayland desktop have no coordinates.
    const bool reportsDevicePixels = !QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
    std::vector<ScaledScreen> screens;
    for (const QScreen* screen : QGuiApplication::screens()) {
        const double scale = reportsDevicePixels ? screen->devicePixelRatio() : 1;
        screens.push_back({screen->geometry(), screen->availableGeometry(), scale});
    }
    return clickPosition(reported, pointerPosition(), screens);
}

} // namespace tallyfox
