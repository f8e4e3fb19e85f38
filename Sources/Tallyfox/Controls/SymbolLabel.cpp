#include "Tallyfox/Controls/SymbolLabel.h"

#include <QPainter>

namespace tallyfox {

SymbolLabel::SymbolLabel(Symbol symbol, const QColor& color, QSize size, QWidget* parent)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_color(color)
{
    setFixedSize(size);
}

void SymbolLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    drawSymbol(painter, m_symbol, rect(), m_color);
}

} // namespace tallyfox
