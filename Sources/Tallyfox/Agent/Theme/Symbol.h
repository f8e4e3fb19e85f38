#pragma once

#include <QColor>
#include <QRectF>
#include <QString>

class QPainter;

namespace tallyfox {

/// The symbols of the views. Each is one drawing in one colour.
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

/// Draws a symbol in `color`, as large as fits into the middle of `frame` (logical pixels), sharp at any scale.
void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& frame, const QColor& color);

} // namespace tallyfox
