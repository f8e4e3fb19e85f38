#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QProgressBar>

namespace tallyfox {

/// A thin progress bar for a percentage.
class UsageBar : public QProgressBar {
    Q_OBJECT

public:
    explicit UsageBar(const QColor& tint, QWidget* parent = nullptr);

    /// Clamps `percent` to 0 to 100. The accessible value is rounded to whole percents.
    void setUsedPercent(double percent);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_tint;
    double m_percent = 0;
};

/// A small spinner for work of unknown duration. Its timer runs only while it is visible.
class ActivityIndicator : public QProgressBar {
    Q_OBJECT

public:
    static constexpr int side = 16; ///< logical pixels

    /// `name` is the accessible name: what is going on.
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
