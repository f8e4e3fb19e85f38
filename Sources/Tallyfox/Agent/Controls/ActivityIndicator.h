#pragma once

#include <QBasicTimer>
#include <QProgressBar>

namespace tallyfox {

/// A small wheel that turns as long as it can be seen: something is going on, for an unknown time. Hidden it wakes
/// nobody.
class ActivityIndicator : public QProgressBar {
    Q_OBJECT

public:
    static constexpr int side = 16; ///< logical pixels

    /// `name` tells a screen reader what is going on.
    explicit ActivityIndicator(const QString& name, QWidget* parent = nullptr);

    [[nodiscard]] bool isTurning() const;

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
