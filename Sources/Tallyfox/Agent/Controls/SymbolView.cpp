#include "Tallyfox/Agent/Controls/SymbolView.h"

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QPainter>

namespace tallyfox {

SymbolView::SymbolView(Symbol symbol, int side, const QColor& color, QWidget* parent)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_color(color)
{
    setFixedSize(side, side);
}

void SymbolView::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    drawSymbol(painter, m_symbol, rect(), m_color);
}

IconTile::IconTile(Symbol symbol, const QColor& color, const QColor& fill, QWidget* parent)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_color(color)
    , m_fill(fill)
{
    setFixedSize(Theme::tileSize, Theme::tileSize);
}

void IconTile::paintEvent(QPaintEvent* /*event*/)
{
    constexpr int symbolInset = 6;
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(m_fill);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(rect(), Theme::tileRadius, Theme::tileRadius);
    drawSymbol(painter, m_symbol, rect().adjusted(symbolInset, symbolInset, -symbolInset, -symbolInset), m_color);
}

} // namespace tallyfox
