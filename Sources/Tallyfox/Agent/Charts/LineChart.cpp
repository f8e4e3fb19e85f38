#include "Tallyfox/Agent/Charts/LineChart.h"

#include "Tallyfox/Agent/Charts/SmoothCurve.h"

#include <QPainter>

#include <algorithm>

namespace tallyfox {

namespace {

constexpr double lineWidth = 2;
constexpr double pointSize = 8; // of what stands for a point under the pointer

} // namespace

LineChart::LineChart(QWidget* parent)
    : Chart(totalHeight, parent)
{ }

QRectF LineChart::lineFrame() const
{
    // The pen reaches out of the curve by half of its width: a line at zero would lose its lower half.
    return plotFrame().adjusted(lineWidth / 2, lineWidth / 2, -lineWidth / 2, -lineWidth / 2);
}

double LineChart::dayPosition(std::size_t day) const
{
    const QRectF frame = lineFrame();
    const std::size_t count = data().days.size();
    if (count < 2)
        return frame.center().x();
    return frame.left() + frame.width() * static_cast<double>(day) / static_cast<double>(count - 1);
}

QRectF LineChart::dayFrame(std::size_t day) const
{
    const QRectF plot = plotFrame();
    const double width = plot.width() / static_cast<double>(data().days.size());
    return QRectF{dayPosition(day) - width / 2, plot.top(), width, plot.height()} & plot;
}

double LineChart::largestValue() const
{
    std::int64_t largest = 1;
    for (const ChartSeries& series : data().series) {
        for (const ChartValue& value : series.values)
            largest = std::max(largest, value.tokens);
    }
    return static_cast<double>(largest);
}

QPointF LineChart::position(const ChartValue& value, double largest) const
{
    const QRectF frame = lineFrame();
    // Only a damaged history counts below zero; there is no room for it.
    const double share = static_cast<double>(std::max<std::int64_t>(value.tokens, 0)) / largest;
    return {dayPosition(value.day), frame.bottom() - share * frame.height()};
}

QRectF LineChart::valueFrame(const ChartSeries& /*series*/, const ChartValue& value) const
{
    const QPointF center = position(value, largestValue());
    return QRectF{center.x() - pointSize / 2, center.y() - pointSize / 2, pointSize, pointSize} & plotFrame();
}

void LineChart::paintPlot(QPainter& painter)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double largest = largestValue();
    for (const ChartSeries& series : data().series)
        paintLine(painter, series, largest);
    painter.restore();
}

void LineChart::paintLine(QPainter& painter, const ChartSeries& series, double largest) const
{
    std::vector<QPointF> points;
    points.reserve(series.values.size());
    for (const ChartValue& value : series.values)
        points.push_back(position(value, largest));
    painter.setPen(QPen{series.color, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    if (points.size() == 1)
        painter.drawPoint(points.front());
    else
        painter.drawPath(smoothCurve(points));
}

} // namespace tallyfox
