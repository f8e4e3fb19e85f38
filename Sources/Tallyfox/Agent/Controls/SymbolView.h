#pragma once

#include "Tallyfox/Agent/Theme/Symbol.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QWidget>

namespace tallyfox {

/// A symbol beside a text; it has no accessible name, as the text says it all.
class SymbolView : public QWidget {
    Q_OBJECT

public:
    /// `side` of the square that it fills, in logical pixels.
    SymbolView(Symbol symbol, int side, const QColor& color, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
    QColor m_color;
};

/// A symbol in the middle of a filled, rounded square.
class IconTile : public QWidget {
    Q_OBJECT

public:
    /// Lengths in logical pixels.
    struct Shape {
        int side;
        double radius; ///< of the corners
        int symbolSide;
    };

    static constexpr Shape small{Theme::tileSize, Theme::tileRadius, 16};
    static constexpr Shape logo{52, 8, 28};
    static constexpr Shape disc{76, 38, 38}; ///< above a text that explains it

    IconTile(const Shape& shape, Symbol symbol, const QColor& color, const QColor& fill, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Shape m_shape;
    Symbol m_symbol;
    QColor m_color;
    QColor m_fill;
};

} // namespace tallyfox
