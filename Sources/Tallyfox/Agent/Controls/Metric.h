#pragma once

#include <QWidget>

#include <vector>

namespace tallyfox {

class TextLabel;

/// A small figure under its title. A value that does not fit ends in an ellipsis and shows the whole of it under the
/// pointer and to a screen reader.
class Metric : public QWidget {
    Q_OBJECT

public:
    explicit Metric(QWidget* parent = nullptr);

    void setMetric(const QString& title, const QString& value);

private:
    TextLabel* m_title;
    TextLabel* m_value;
};

/// How wide the columns of a row are that is `available` wide. Equally wide where the wish of each can be met that
/// way; else the narrow ones leave to the wide ones what they do not need.
std::vector<int> columnWidths(const std::vector<int>& wishes, int available);

/// Metrics side by side, over the whole width.
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
