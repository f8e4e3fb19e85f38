#pragma once

#include <QColor>
#include <QProgressBar>

namespace tallyfox {

/// A thin bar that fills up with a percentage.
class UsageBar : public QProgressBar {
    Q_OBJECT

public:
    explicit UsageBar(const QColor& tint, QWidget* parent = nullptr);

    /// Fills the bar to `percent`, taken as at least 0 and at most 100. A screen reader is told whole percents.
    void setUsedPercent(double percent);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_tint;
    double m_percent = 0;
};

} // namespace tallyfox
