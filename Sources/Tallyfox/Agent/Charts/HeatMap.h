#pragma once

#include "Tallyfox/Agent/Controls/AccessibleElements.h"

#include <QColor>
#include <QDate>
#include <QWidget>

#include <cstdint>
#include <optional>
#include <vector>

namespace tallyfox {

/// One day of the heat map.
struct HeatCell {
    QDate day{};
    std::int64_t tokens = 0;
    double opacity = 0; ///< of the cell's colour, 0 to 1

    friend bool operator==(const HeatCell&, const HeatCell&) = default;
};

/// Small squares in rows of 53, filled row by row; the busier the day, the more opaque.
class HeatMap : public QWidget, public AccessibleDrawing {
    Q_OBJECT

public:
    static constexpr int columns = 53;
    static constexpr int cellSize = 5;
    static constexpr int gap = 2; ///< between columns, and between rows
    static constexpr int cellRadius = 2;

    HeatMap(const QColor& color, QWidget* parent);

    /// Replaces the cells, which determine the widget's height; equal cells change nothing.
    void setCells(std::vector<HeatCell> cells);

    /// Where a cell is drawn.
    [[nodiscard]] static QRect cellFrame(std::size_t index);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] QAccessible::Role accessibleRole() const override;
    [[nodiscard]] std::vector<AccessibleElement> accessibleElements() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] std::optional<std::size_t> cellAt(QPoint position) const;

    QColor m_color;
    std::vector<HeatCell> m_cells;
};

} // namespace tallyfox
