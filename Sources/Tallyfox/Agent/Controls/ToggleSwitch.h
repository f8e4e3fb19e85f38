#pragma once

#include <QCheckBox>

namespace tallyfox {

/// A check box that looks like a switch. The label beside it is a separate widget and its accessible name.
class ToggleSwitch : public QCheckBox {
    Q_OBJECT

public:
    static constexpr int ringSpace = 3; ///< around the switch, for the focus ring

    explicit ToggleSwitch(QWidget* parent = nullptr);

    /// Sets the state without emitting a signal.
    void showChecked(bool isChecked);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    [[nodiscard]] bool hitButton(const QPoint& position) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    void paintTrack(QPainter& painter, const QRectF& track) const;
    void paintKnob(QPainter& painter, const QRectF& track) const;
};

} // namespace tallyfox
