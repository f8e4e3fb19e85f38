#pragma once

#include "Tallyfox/Agent/Charts/Chart.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tallyfox {

class PixelGrid;

/// The marks of an axis that starts at zero.
struct AxisScale {
    std::uint64_t step = 1; ///< 1, 2, 2.5 or 5 times a power of ten; always a whole number
    std::uint64_t steps = 1; ///< at least 1

    /// The last mark: at least the largest number that the scale was made for.
    [[nodiscard]] std::uint64_t top() const;
    /// All marks, starting at zero.
    [[nodiscard]] std::vector<std::uint64_t> marks() const;

    friend bool operator==(const AxisScale&, const AxisScale&) = default;
};

/// The scale with the smallest step that reaches `largest` in at most `maxSteps` steps (at least 1). A `largest`
/// below 1 counts as 1.
AxisScale axisScale(std::int64_t largest, std::uint64_t maxSteps);

/// A mark's label, exact and short: "0", "250", "2.5K", "1M", "10B".
std::string axisLabel(std::uint64_t mark);

/// One bar per day with the series stacked in their order, and horizontal grid lines at round numbers. Bars start and
/// end on device pixels, so they are sharp for any number of days.
class StackedBarChart : public Chart {
    Q_OBJECT

public:
    static constexpr int totalHeight = 220; ///< legend included

    explicit StackedBarChart(QWidget* parent = nullptr);

    /// The vertical axis, fitted to the highest bar.
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
