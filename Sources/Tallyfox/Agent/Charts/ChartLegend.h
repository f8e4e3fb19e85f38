#pragma once

#include "Tallyfox/Agent/Charts/ChartData.h"

#include <QRectF>

#include <span>

class QPainter;

namespace tallyfox::ChartLegend {

/// Height of the legend in logical pixels.
int height();

/// Draws which colour is which series: one row of dots and names, from the left of `frame`.
void paint(QPainter& painter, const QRectF& frame, std::span<const ChartSeries> series);

} // namespace tallyfox::ChartLegend
