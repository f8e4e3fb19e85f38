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

/// What the charts share: data, a fixed height with the legend at its foot, the help text of the day under the
/// pointer, and the numbers for a screen reader (series by series, day by day).
class Chart : public QWidget, public AccessibleDrawing {
    Q_OBJECT

public:
    /// Draws `data` from now on. The same data once more change nothing.
    void setData(ChartData data);
    [[nodiscard]] const ChartData& data() const;

    /// What the pointer is told over a day: the date, then a line for each series that has a value there.
    [[nodiscard]] QString helpText(std::size_t day) const;

    [[nodiscard]] QAccessible::Role accessibleRole() const override;
    [[nodiscard]] std::vector<AccessibleElement> accessibleElements() const override;

protected:
    /// `height` in logical pixels, legend included.
    Chart(int height, QWidget* parent);

    /// Everything but the legend.
    [[nodiscard]] QRectF plotFrame() const;
    /// The part of the plot that a day has for itself, from top to bottom.
    [[nodiscard]] virtual QRectF dayFrame(std::size_t day) const = 0;
    /// Where the value of a series is drawn.
    [[nodiscard]] virtual QRectF valueFrame(const ChartSeries& series, const ChartValue& value) const = 0;
    virtual void paintPlot(QPainter& painter) = 0;

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] std::optional<std::size_t> dayAt(QPointF position) const;
    void showHelp(const QPoint& position, const QPoint& onScreen);
    [[nodiscard]] AccessibleElement elementOf(const ChartSeries& series, const DayFormat& format) const;

    ChartData m_data;
};

} // namespace tallyfox
