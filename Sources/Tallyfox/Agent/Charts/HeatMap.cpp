#include "Tallyfox/Agent/Charts/HeatMap.h"

#include "Tallyfox/Agent/Controls/Painting.h"
#include "Tallyfox/Agent/Theme/DateFormats.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Engine/CommandLine/TokenText.h"

#include <QHelpEvent>
#include <QLocale>
#include <QPainter>
#include <QToolTip>

#include <cmath>
#include <utility>

namespace tallyfox {

namespace {

constexpr int pitch = HeatMap::cellSize + HeatMap::gap;

int rowCount(std::size_t cells)
{
    return (static_cast<int>(cells) + HeatMap::columns - 1) / HeatMap::columns;
}

/// "Nov 15, 2026: 1.2K": the tooltip and the accessible name.
QString tooltip(const HeatCell& cell, const DayFormat& format)
{
    return HeatMap::tr("%1: %2").arg(format.text(cell.day), tokenText(cell.tokens, QLocale{}));
}

} // namespace

HeatMap::HeatMap(const QColor& color, QWidget* parent)
    : QWidget(parent)
    , m_color(color)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void HeatMap::setCells(std::vector<HeatCell> cells)
{
    if (cells == m_cells)
        return;
    const bool keepsHeight = rowCount(cells.size()) == rowCount(m_cells.size());
    m_cells = std::move(cells);
    if (!keepsHeight)
        updateGeometry();
    accessibleElementsChanged(*this);
    update();
}

QRect HeatMap::cellFrame(std::size_t index)
{
    const int cell = static_cast<int>(index);
    return {cell % columns * pitch, cell / columns * pitch, cellSize, cellSize};
}

QSize HeatMap::sizeHint() const
{
    return {columns * pitch - gap, std::max(rowCount(m_cells.size()) * pitch - gap, 0)};
}

QSize HeatMap::minimumSizeHint() const
{
    return sizeHint();
}

QAccessible::Role HeatMap::accessibleRole() const
{
    return QAccessible::Chart;
}

std::vector<AccessibleElement> HeatMap::accessibleElements() const
{
    const DayFormat format;
    std::vector<AccessibleElement> elements;
    elements.reserve(m_cells.size());
    for (std::size_t index = 0; index < m_cells.size(); ++index) {
        const HeatCell& cell = m_cells[index];
        elements.push_back(
            {tooltip(cell, format), tokenText(cell.tokens, QLocale{}), QAccessible::Graphic, cellFrame(index), {}});
    }
    return elements;
}

std::optional<std::size_t> HeatMap::cellAt(QPoint position) const
{
    for (std::size_t index = 0; index < m_cells.size(); ++index) {
        // Each gap counts as part of the cell before it, so that there is a tooltip everywhere.
        if (cellFrame(index).adjusted(0, 0, gap, gap).contains(position))
            return index;
    }
    return std::nullopt;
}

bool HeatMap::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    if (const auto index = cellAt(help->pos()))
        QToolTip::showText(help->globalPos(), tooltip(m_cells[*index], DayFormat{}), this,
                           cellFrame(*index).adjusted(0, 0, gap, gap));
    else
        QToolTip::hideText();
    return true;
}

void HeatMap::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const PixelGrid grid{painter};
    // The same number of device pixels each: at a scale of 1.25, some cells would otherwise be wider than others.
    const double side = std::round(grid.pixels(cellSize)) * grid.pixel();
    for (std::size_t index = 0; index < m_cells.size(); ++index) {
        const QRect frame = cellFrame(index);
        painter.setBrush(Theme::withOpacity(m_color, m_cells[index].opacity));
        painter.drawRoundedRect(QRectF{grid.x(frame.left()), grid.y(frame.top()), side, side}, cellRadius, cellRadius);
    }
}

} // namespace tallyfox
