#pragma once

#include <QColor>
#include <QDate>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tallyfox {

/// A number at one of a chart's days.
struct ChartValue {
    std::size_t day = 0; ///< index into the chart's days
    std::int64_t tokens = 0;

    friend bool operator==(const ChartValue&, const ChartValue&) = default;
};

/// The numbers that share a colour. A series without values still has its place in the legend.
struct ChartSeries {
    QString name{};
    QColor color{};
    std::vector<ChartValue> values{}; ///< days ascending

    friend bool operator==(const ChartSeries&, const ChartSeries&) = default;
};

/// What a chart draws: series over common days, from left to right.
struct ChartData {
    std::vector<QDate> days{};
    std::vector<ChartSeries> series{};

    friend bool operator==(const ChartData&, const ChartData&) = default;
};

} // namespace tallyfox
