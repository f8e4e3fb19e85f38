#include "Tallyfox/Agent/Controls/SymbolView.h"

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

IconTile::IconTile(const Shape& shape, Symbol symbol, const QColor& color, const QColor& fill, QWidget* parent)
    : QWidget(parent)
    , m_shape(shape)
    , m_symbol(symbol)
    , m_color(color)
    , m_fill(fill)
{
    setFixedSize(shape.side, shape.side);
}

void IconTile::paintEvent(QPaintEvent* /*event*/)
{
    const int inset = (m_shape.side - m_shape.symbolSide) / 2;
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(m_fill);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(rect(), m_shape.radius, m_shape.radius);
    drawSymbol(painter, m_symbol, rect().adjusted(inset, inset, -inset, -inset), m_color);
}

} // namespace tallyfox
