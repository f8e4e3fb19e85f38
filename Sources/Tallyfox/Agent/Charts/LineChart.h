#pragma once

#include "Tallyfox/Agent/Charts/Chart.h"

#include <QPainterPath>
#include <QPointF>

#include <span>

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

/// A smooth curve through every one of `points`, whose x must ascend strictly. Between two points it never leaves the
/// range of their y: where the numbers are zero the curve stays at zero, and it rises above no peak. One point gives
/// a path that only moves there; none gives an empty path.
QPainterPath smoothCurve(std::span<const QPointF> points);

} // namespace tallyfox
