#include "Tallyfox/Agent/Charts/LineChart.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace tallyfox {

namespace {

constexpr double lineWidth = 2;
constexpr double pointSize = 8; // of a value's accessible frame

/// The slopes of the straight lines between neighbouring points.
std::vector<double> secants(std::span<const QPointF> points)
{
    std::vector<double> slopes;
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
        slopes.push_back((points[i + 1].y() - points[i].y()) / (points[i + 1].x() - points[i].x()));
    return slopes;
}

/// The curve's slope at each point: zero at peaks and valleys, otherwise the mean of the slopes on both sides.
std::vector<double> tangents(const std::vector<double>& secant)
{
    std::vector<double> slopes{secant.front()};
    for (std::size_t i = 1; i < secant.size(); ++i) {
        const bool turns = secant[i - 1] * secant[i] <= 0;
        slopes.push_back(turns ? 0 : (secant[i - 1] + secant[i]) / 2);
    }
    slopes.push_back(secant.back());
    return slopes;
}

/// Fritsch and Carlson (1980): a cubic piece is monotone if its end slopes, as multiples of the secant slope, are
/// within a circle of radius 3. Steeper ones are scaled down onto the circle.
void keepMonotone(std::vector<double>& tangent, const std::vector<double>& secant)
{
    constexpr double radius = 3;
    for (std::size_t i = 0; i < secant.size(); ++i) {
        if (secant[i] == 0) {
            tangent[i] = tangent[i + 1] = 0;
            continue;
        }
        const double length = std::hypot(tangent[i] / secant[i], tangent[i + 1] / secant[i]);
        if (length > radius) {
            tangent[i] *= radius / length;
            tangent[i + 1] *= radius / length;
        }
    }
}

} // namespace

LineChart::LineChart(QWidget* parent)
    : Chart(totalHeight, parent)
{ }

QRectF LineChart::lineFrame() const
{
    // Leave room for half of the pen: the lower half of a line at zero would be clipped.
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
    // Only a damaged history has negative counts; they are drawn as zero.
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

QPainterPath smoothCurve(std::span<const QPointF> points)
{
    QPainterPath path;
    if (points.empty())
        return path;
    path.moveTo(points.front());
    if (points.size() == 1)
        return path;
    const std::vector<double> secant = secants(points);
    std::vector<double> tangent = tangents(secant);
    keepMonotone(tangent, secant);
    for (std::size_t i = 0; i < secant.size(); ++i) {
        const double third = (points[i + 1].x() - points[i].x()) / 3;
        path.cubicTo(points[i] + QPointF{third, third * tangent[i]},
                     points[i + 1] - QPointF{third, third * tangent[i + 1]}, points[i + 1]);
    }
    return path;
}

} // namespace tallyfox
