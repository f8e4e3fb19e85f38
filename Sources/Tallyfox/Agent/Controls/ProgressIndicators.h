#pragma once

#include <QBasicTimer>
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

/// A small wheel that turns as long as it can be seen: something is going on, for an unknown time. Hidden it wakes
/// nobody.
class ActivityIndicator : public QProgressBar {
    Q_OBJECT

public:
    static constexpr int side = 16; ///< logical pixels

    /// `name` tells a screen reader what is going on.
    explicit ActivityIndicator(const QString& name, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QBasicTimer m_turn;
    int m_step = 0;
};

} // namespace tallyfox
