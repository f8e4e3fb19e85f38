#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace tallyfox {

/// The symbols of the views, each drawn in a single colour.
enum class Symbol {
    arrowClockwise, ///< refresh
    barChartFill, ///< the program itself
    bell,
    chevronRight,
    codeSlash, ///< Codex
    cupHot,
    cupHotFill,
    diamond,
    folderPlus,
    gear,
    infoCircle,
    personCircle,
    plus,
    shieldLock,
    stars, ///< Claude
    trophyFill,
    wind,
};

/// Draws a symbol in `color`, centred in `frame` (logical pixels), as large as it fits, and sharp at any scale.
void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& frame, const QColor& color);

} // namespace tallyfox
