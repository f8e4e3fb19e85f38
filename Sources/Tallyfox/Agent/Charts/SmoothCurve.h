#pragma once

#include <QPainterPath>
#include <QPointF>

#include <span>

namespace tallyfox {

/// A smooth curve through every one of `points`, whose x must ascend strictly. Between two points it never leaves the
/// range of their y: where the numbers are zero the curve stays at zero, and it rises above no peak. One point gives
/// a path that only moves there; none gives an empty path.
QPainterPath smoothCurve(std::span<const QPointF> points);

} // namespace tallyfox
