#pragma once

#include "Tallyfox/Agent/Charts/Chart.h"

#include <QPainterPath>

namespace tallyfox {

/// One smooth line for each series, without axes: the shape of the days, not their numbers.
class LineChart : public Chart {
    Q_OBJECT

public:
    static constexpr int totalHeight = 92; ///< legend included

    explicit LineChart(QWidget* parent = nullptr);

protected:
    [[nodiscard]] QRectF dayFrame(std::size_t day) const override;
    [[nodiscard]] QRectF valueFrame(const ChartSeries& series, const ChartValue& value) const override;
    void paintPlot(QPainter& painter) override;

private:
    [[nodiscard]] QRectF lineFrame() const;
    [[nodiscard]] double dayPosition(std::size_t day) const;
    [[nodiscard]] QPointF position(const ChartValue& value, double largest) const;
    [[nodiscard]] double largestValue() const;
    void paintLine(QPainter& painter, const ChartSeries& series, double largest) const;
};

} // namespace tallyfox
