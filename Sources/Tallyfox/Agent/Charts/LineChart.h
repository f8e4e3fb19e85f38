#pragma once

#include "Tallyfox/Agent/Charts/Chart.h"

#include <QPainterPath>
#include <QPointF>

#include <span>

namespace tallyfox {

/// A smooth line per series without axes: it shows the trend, not the numbers.
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

/// A smooth curve through all `points`, whose x must be strictly increasing. Between two points it stays within the
/// range of their y, so it neither dips below zero nor overshoots a peak. One point gives a path that only moves
/// there; no points give an empty path.
QPainterPath smoothCurve(std::span<const QPointF> points);

} // namespace tallyfox
