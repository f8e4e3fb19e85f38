#pragma once

#include "Tallyfox/Agent/Controls/AccessibleElements.h"

#include <QColor>
#include <QDate>
#include <QString>
#include <QWidget>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tallyfox {

class DayFormat;

/// One day's value.
struct ChartValue {
    std::size_t day = 0; ///< index into the chart's days
    std::int64_t tokens = 0;

    friend bool operator==(const ChartValue&, const ChartValue&) = default;
};

/// Values drawn in one colour. A series without values is still listed in the legend.
struct ChartSeries {
    QString name{};
    QColor color{};
    std::vector<ChartValue> values{}; ///< days ascending

    friend bool operator==(const ChartSeries&, const ChartSeries&) = default;
};

/// What a chart draws: series over the same days, from left to right.
struct ChartData {
    std::vector<QDate> days{};
    std::vector<ChartSeries> series{};

    friend bool operator==(const ChartData&, const ChartData&) = default;
};

/// Base of the charts: data, a fixed height with the legend at the bottom, a tooltip for the day under the pointer,
/// and accessible elements for every series and every day of it.
class Chart : public QWidget, public AccessibleDrawing {
    Q_OBJECT

public:
    /// Replaces the data; equal data change nothing.
    void setData(ChartData data);
    [[nodiscard]] const ChartData& data() const;

    [[nodiscard]] QAccessible::Role accessibleRole() const override;
    [[nodiscard]] std::vector<AccessibleElement> accessibleElements() const override;

protected:
    /// `height` is in logical pixels and includes the legend.
    Chart(int height, QWidget* parent);

    /// The widget without the legend.
    [[nodiscard]] QRectF plotFrame() const;
    /// The full-height column of the plot that belongs to a day.
    [[nodiscard]] virtual QRectF dayFrame(std::size_t day) const = 0;
    /// Where a series' value is drawn.
    [[nodiscard]] virtual QRectF valueFrame(const ChartSeries& series, const ChartValue& value) const = 0;
    virtual void paintPlot(QPainter& painter) = 0;

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] std::optional<std::size_t> dayAt(QPointF position) const;
    /// The tooltip of a day: the date, then a line for each series with a value on that day.
    [[nodiscard]] QString tooltip(std::size_t day) const;
    [[nodiscard]] AccessibleElement makeElement(const ChartSeries& series, const DayFormat& format) const;

    ChartData m_data;
};

} // namespace tallyfox
