#include "Tallyfox/Agent/Charts/SmoothCurve.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace tallyfox {

namespace {

/// The slope of each of the lines that join neighbours.
std::vector<double> secants(std::span<const QPointF> points)
{
    std::vector<double> slopes;
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
        slopes.push_back((points[i + 1].y() - points[i].y()) / (points[i + 1].x() - points[i].x()));
    return slopes;
}

/// The curve's slope at each point: level at peaks and valleys, else between the slopes of the two sides.
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

/// Fritsch and Carlson: a piece of a cubic is monotone when its end slopes, as multiples of the secant, lie inside of
/// a circle of radius 3. Steeper ones are shortened onto it.
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
