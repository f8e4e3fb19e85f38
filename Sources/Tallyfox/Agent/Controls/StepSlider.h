#pragma once

#include <QSlider>

namespace tallyfox {

/// A horizontal slider that snaps to steps, counted from its minimum, whether it is moved by key, wheel, pointer or
/// screen reader. A press on the track moves the knob there.
class StepSlider : public QSlider {
    Q_OBJECT

public:
    StepSlider(int minimum, int maximum, int step, QWidget* parent = nullptr);

    /// Moves to the step nearest to `value` without emitting a signal.
    void showValue(double value);

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    void stepped(int value); ///< the user moved it to another step

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
    void snapToStep(int value);

    int m_turned = 0; ///< of the wheel, in eighths of a degree, not yet worth a step
};

} // namespace tallyfox
