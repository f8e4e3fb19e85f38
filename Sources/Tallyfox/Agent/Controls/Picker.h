#pragma once

#include <QComboBox>

namespace tallyfox {

/// A choice of one among a few, in the program's own look. The wheel turns it only while it has the focus: a form is
/// scrolled over it.
class Picker : public QComboBox {
    Q_OBJECT

public:
    explicit Picker(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    /// The list of choices has the picker's accessible name.
    void showPopup() override;

protected:
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void paintArrows(QPainter& painter, const QRect& frame) const;
};

} // namespace tallyfox
