#pragma once

#include "Tallyfox/Agent/Charts/AxisScale.h"
#include "Tallyfox/Agent/Charts/Chart.h"

namespace tallyfox {

class PixelGrid;

/// One bar for each day, on which the series are stacked in their order, over horizontal lines at round numbers.
/// Bars begin and end on device pixels: nothing blurs, however many days there are.
class StackedBarChart : public Chart {
    Q_OBJECT

public:
    static constexpr int totalHeight = 220; ///< legend included

    explicit StackedBarChart(QWidget* parent = nullptr);

    /// The vertical axis, which the highest bar fits.
    [[nodiscard]] AxisScale scale() const;

protected:
    [[nodiscard]] QRectF dayFrame(std::size_t day) const override;
    [[nodiscard]] QRectF valueFrame(const ChartSeries& series, const ChartValue& value) const override;
    void paintPlot(QPainter& painter) override;

private:
    [[nodiscard]] bool hasTokens() const;
    [[nodiscard]] QRectF barsFrame(const AxisScale& scale) const;
    void paintAxis(QPainter& painter, const PixelGrid& grid, const AxisScale& scale, const QRectF& frame) const;
    void paintBars(QPainter& painter, const PixelGrid& grid, const AxisScale& scale, const QRectF& frame) const;
};

} // namespace tallyfox
