#pragma once

#include <QSlider>

namespace tallyfox {

/// A horizontal slider that stands on whole steps only, however it is moved: by key, wheel or pointer, or by a screen
/// reader. Its minimum is the first step. A press on the track moves it there.
class StepSlider : public QSlider {
    Q_OBJECT

public:
    StepSlider(int minimum, int maximum, int step, QWidget* parent = nullptr);

    /// Shows the step nearest to a value that does not come from the user: nothing is emitted.
    void showValue(double value);

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    void stepped(int value); ///< the user has moved it to another step

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] int nearestStep(double value) const;
    [[nodiscard]] int valueAt(double x) const;
    [[nodiscard]] double knobCenter() const;
    [[nodiscard]] bool isMirrored() const;
    void settle(int value);

    int m_turned = 0; ///< of the wheel, in eighths of a degree, not yet worth a step
};

} // namespace tallyfox
