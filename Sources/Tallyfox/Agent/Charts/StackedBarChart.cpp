#include "Tallyfox/Agent/Charts/StackedBarChart.h"

#include "Tallyfox/Agent/Controls/Painting.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "TallyfoxCore/Usage/TokenSum.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace tallyfox {

namespace {

std::uint64_t stepsToReach(std::uint64_t largest, std::uint64_t step)
{
    return (largest - 1) / step + 1;
}

struct Unit {
    std::uint64_t size;
    std::string_view sign;
};

constexpr std::array units{Unit{1'000'000'000'000, "T"}, Unit{1'000'000'000, "B"}, Unit{1'000'000, "M"},
                           Unit{1'000, "K"}};

constexpr std::uint64_t maxAxisSteps = 5;
constexpr int labelGap = 6; // between the bars and the labels of the axis
constexpr double gridOpacity = 0.6;
constexpr double narrowestColumnWithGap = 4; // device pixels; in narrower columns, gaps would take up to half
constexpr double gapShare = 0.25; // of a column

/// Only a damaged history has negative counts; they are drawn as zero.
std::int64_t barTokens(const ChartValue& value)
{
    return std::max<std::int64_t>(value.tokens, 0);
}

std::vector<std::int64_t> totals(const ChartData& data)
{
    std::vector<std::int64_t> totals(data.days.size());
    for (const ChartSeries& series : data.series) {
        for (const ChartValue& value : series.values)
            totals.at(value.day) = tokenSum(totals.at(value.day), barTokens(value));
    }
    return totals;
}

/// The tokens stacked below `series` in the bar of `day`.
std::int64_t tokensBelow(const ChartData& data, const ChartSeries& series, std::size_t day)
{
    std::int64_t sum = 0;
    for (const ChartSeries& lower : data.series) {
        if (&lower == &series)
            break;
        for (const ChartValue& value : lower.values)
            sum = tokenSum(sum, value.day == day ? barTokens(value) : 0);
    }
    return sum;
}

double barHeight(std::int64_t tokens, const AxisScale& scale, const QRectF& frame)
{
    return static_cast<double>(tokens) / static_cast<double>(scale.top()) * frame.height();
}

QString label(std::uint64_t mark)
{
    return QString::fromStdString(axisLabel(mark));
}

/// The horizontal extent of a day's bar: the same whole number of device pixels for every bar.
struct BarSpan {
    double left;
    double width;
};

BarSpan barSpan(const PixelGrid& grid, const QRectF& frame, std::size_t day, std::size_t count)
{
    const double column = frame.width() / static_cast<double>(count);
    const double start = frame.left() + column * static_cast<double>(day);
    const double pixels = grid.pixels(column);
    if (pixels < narrowestColumnWithGap)
        return {grid.x(start), grid.x(start + column) - grid.x(start)};
    const double gap = std::max(1.0, std::round(pixels * gapShare));
    return {grid.x(start + gap / 2 * grid.pixel()), (std::floor(pixels) - gap) * grid.pixel()};
}

} // namespace

std::uint64_t AxisScale::top() const
{
    return step * steps;
}

std::vector<std::uint64_t> AxisScale::marks() const
{
    std::vector<std::uint64_t> marks;
    for (std::uint64_t i = 0; i <= steps; ++i)
        marks.push_back(step * i);
    return marks;
}

AxisScale axisScale(std::int64_t largest, std::uint64_t maxSteps)
{
    const auto reach = static_cast<std::uint64_t>(std::max<std::int64_t>(largest, 1));
    // Ends at 10^19 at the latest: that fits into 64 bits, and no count is greater.
    for (std::uint64_t power = 1;; power *= 10) {
        // 2.5 is not a whole number of tokens, so 5 takes its place at the first power.
        const std::uint64_t twoAndAHalf = power == 1 ? 5 : power / 10 * 25;
        for (const std::uint64_t step : {power, 2 * power, twoAndAHalf, 5 * power}) {
            if (stepsToReach(reach, step) <= maxSteps)
                return {step, stepsToReach(reach, step)};
        }
    }
}

std::string axisLabel(std::uint64_t mark)
{
    const auto* unit = std::find_if(units.begin(), units.end(), [mark](const Unit& each) { return mark >= each.size; });
    if (unit == units.end())
        return std::to_string(mark);
    std::array<char, 32> digits{};
    const double value = static_cast<double>(mark) / static_cast<double>(unit->size);
    const auto end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed).ptr;
    return std::string{digits.begin(), end} + std::string{unit->sign};
}

StackedBarChart::StackedBarChart(QWidget* parent)
    : Chart(totalHeight, parent)
{ }

AxisScale StackedBarChart::scale() const
{
    const std::vector<std::int64_t> dayTotals = totals(data());
    const auto highest = std::max_element(dayTotals.begin(), dayTotals.end());
    return axisScale(highest == dayTotals.end() ? 0 : *highest, maxAxisSteps);
}

bool StackedBarChart::hasTokens() const
{
    const std::vector<std::int64_t> dayTotals = totals(data());
    return std::any_of(dayTotals.begin(), dayTotals.end(), [](std::int64_t tokens) { return tokens > 0; });
}

QRectF StackedBarChart::barsFrame(const AxisScale& scale) const
{
    const QFontMetrics metrics{Theme::caption2()};
    int labelWidth = 0;
    for (const std::uint64_t mark : scale.marks())
        labelWidth = std::max(labelWidth, metrics.horizontalAdvance(label(mark)));
    const double halfLabel = metrics.height() / 2.0; // the first and last label extend beyond the ends of the axis
    return plotFrame().adjusted(0, halfLabel, -(labelWidth + labelGap), -halfLabel);
}

QRectF StackedBarChart::dayFrame(std::size_t day) const
{
    const QRectF frame = barsFrame(scale());
    const double column = frame.width() / static_cast<double>(data().days.size());
    return {frame.left() + column * static_cast<double>(day), frame.top(), column, frame.height()};
}

QRectF StackedBarChart::valueFrame(const ChartSeries& series, const ChartValue& value) const
{
    const AxisScale axis = scale();
    const QRectF frame = barsFrame(axis);
    const double bottom = frame.bottom() - barHeight(tokensBelow(data(), series, value.day), axis, frame);
    const double height = barHeight(barTokens(value), axis, frame);
    const QRectF column = dayFrame(value.day);
    return {column.left(), bottom - height, column.width(), height};
}

void StackedBarChart::paintPlot(QPainter& painter)
{
    const PixelGrid grid{painter};
    const AxisScale axis = scale();
    const QRectF frame = barsFrame(axis);
    paintAxis(painter, grid, axis, frame);
    paintBars(painter, grid, axis, frame);
}

void StackedBarChart::paintAxis(QPainter& painter, const PixelGrid& grid, const AxisScale& scale,
                                const QRectF& frame) const
{
    painter.setFont(Theme::caption2());
    painter.setPen(Theme::muted());
    const double labelHeight = QFontMetrics{Theme::caption2()}.height();
    // Without any tokens, labels other than zero would be arbitrary.
    const std::uint64_t lastStep = hasTokens() ? scale.steps : 0;
    for (std::uint64_t step = 0; step <= lastStep; ++step) {
        const double share = static_cast<double>(step) / static_cast<double>(scale.steps);
        const double y = grid.y(frame.bottom() - share * frame.height());
        painter.fillRect(QRectF{frame.left(), y, frame.width(), grid.thinLine()},
                         Theme::withOpacity(Theme::line(), step == 0 ? 1 : gridOpacity));
        const QRectF text{frame.right() + labelGap, y - labelHeight / 2, width() - frame.right() - labelGap,
                          labelHeight};
        painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, label(scale.step * step));
    }
}

void StackedBarChart::paintBars(QPainter& painter, const PixelGrid& grid, const AxisScale& scale,
                                const QRectF& frame) const
{
    const std::size_t count = data().days.size();
    struct Column {
        std::int64_t tokens = 0;
        double top = 0;
    };
    std::vector<Column> columns(count, Column{.top = grid.y(frame.bottom())});
    for (const ChartSeries& series : data().series) {
        for (const ChartValue& value : series.values) {
            if (barTokens(value) == 0)
                continue;
            Column& column = columns.at(value.day);
            column.tokens += barTokens(value);
            // At least one pixel for any value above zero.
            const double bottom = column.top;
            column.top =
                std::min(grid.y(frame.bottom() - barHeight(column.tokens, scale, frame)), bottom - grid.pixel());
            const BarSpan span = barSpan(grid, frame, value.day, count);
            painter.fillRect(QRectF{span.left, column.top, span.width, bottom - column.top}, series.color);
        }
    }
}

} // namespace tallyfox
