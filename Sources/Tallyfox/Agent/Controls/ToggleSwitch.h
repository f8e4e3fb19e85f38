#pragma once

#include <QCheckBox>

namespace tallyfox {

/// A check box that looks like a switch. Its label is beside it, and its accessible name.
class ToggleSwitch : public QCheckBox {
    Q_OBJECT

public:
    static constexpr int ringSpace = 3; ///< around what is seen, for the mark of the focus

    explicit ToggleSwitch(QWidget* parent = nullptr);

    /// Shows a value that does not come from the user: nothing is emitted.
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
