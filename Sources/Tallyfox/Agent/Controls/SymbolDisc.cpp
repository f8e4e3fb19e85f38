#include "Tallyfox/Agent/Controls/SymbolDisc.h"

#include <QPainter>

namespace tallyfox {

SymbolDisc::SymbolDisc(Symbol symbol, const QColor& color, const QColor& fill, QWidget* parent)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_color(color)
    , m_fill(fill)
{
    setFixedSize(diameter, diameter);
}

void SymbolDisc::paintEvent(QPaintEvent* /*event*/)
{
    constexpr int inset = (diameter - symbolSize) / 2;
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_fill);
    painter.drawEllipse(rect());
    drawSymbol(painter, m_symbol, rect().adjusted(inset, inset, -inset, -inset), m_color);
}

} // namespace tallyfox
