#pragma once

#include "Tallyfox/Agent/Theme/Symbol.h"

#include <QWidget>

namespace tallyfox {

/// A symbol beside a text. It says nothing by itself: the text does.
class SymbolView : public QWidget {
    Q_OBJECT

public:
    /// `side`: of the square it fills, logical pixels.
    SymbolView(Symbol symbol, int side, const QColor& color, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
    QColor m_color;
};

/// A symbol on a small rounded tile.
class IconTile : public QWidget {
    Q_OBJECT

public:
    IconTile(Symbol symbol, const QColor& color, const QColor& fill, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
    QColor m_color;
    QColor m_fill;
};

} // namespace tallyfox
