#pragma once

#include "Tallyfox/Agent/Charts/ChartData.h"
#include "Tallyfox/Agent/Controls/AccessibleElements.h"

#include <QWidget>

#include <optional>

namespace tallyfox {

class DayFormat;

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
