#pragma once

#include <QComboBox>

namespace tallyfox {

/// A combo box in the program's own look. Ignores the wheel unless it has the focus, so that a form can be scrolled
/// past it.
class Picker : public QComboBox {
    Q_OBJECT

public:
    explicit Picker(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    /// Gives the list of choices the picker's accessible name.
    void showPopup() override;

protected:
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void paintArrows(QPainter& painter, const QRect& frame) const;
};

} // namespace tallyfox
