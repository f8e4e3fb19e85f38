#pragma once

#include <QPushButton>

namespace tallyfox {

/// Any content, laid out in it by the caller, that can be pressed as a whole. Sizes itself after its layout.
class CardButton : public QPushButton {
    Q_OBJECT

public:
    /// `name` tells a screen reader what pressing it does.
    explicit CardButton(const QString& name, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override;
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void childEvent(QChildEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* m_veil = nullptr;
};

} // namespace tallyfox
