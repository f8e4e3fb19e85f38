#include "Tallyfox/Agent/Controls/LogoTile.h"

#include "Tallyfox/Agent/Theme/Symbol.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QPainter>

namespace tallyfox {

namespace {

constexpr int tileSide = 52;
constexpr double tileRadius = 8;
constexpr double symbolSide = 28;

} // namespace

LogoTile::LogoTile(QWidget* parent)
    : QWidget(parent)
{
    setFixedSize(tileSide, tileSide);
}

void LogoTile::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::accent());
    painter.drawRoundedRect(rect(), tileRadius, tileRadius);
    constexpr double inset = (tileSide - symbolSide) / 2;
    drawSymbol(painter, Symbol::barChartFill, {inset, inset, symbolSide, symbolSide}, Theme::cream());
}

} // namespace tallyfox
