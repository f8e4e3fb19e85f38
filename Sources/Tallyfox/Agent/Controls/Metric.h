#pragma once

#include <QWidget>

#include <vector>

namespace tallyfox {

class TextLabel;

/// A small figure below its title. A value that does not fit is elided; the tooltip and the accessible name have the
/// full text.
class Metric : public QWidget {
    Q_OBJECT

public:
    explicit Metric(QWidget* parent = nullptr);

    void setMetric(const QString& title, const QString& value);

private:
    TextLabel* m_title;
    TextLabel* m_value;
};

/// Distributes `available` among columns of `preferred` widths: equally if each one fits into an equal share;
/// otherwise the narrow columns give up the space they do not need to the wide ones.
std::vector<int> columnWidths(const std::vector<int>& preferred, int available);

/// Metrics side by side, across the whole width.
class MetricRow : public QWidget {
    Q_OBJECT

public:
    explicit MetricRow(int count, QWidget* parent = nullptr);

    void setMetric(int index, const QString& title, const QString& value);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOutMetrics();

    std::vector<Metric*> m_metrics;
};

} // namespace tallyfox
