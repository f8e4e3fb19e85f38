#pragma once

#include "Tallyfox/Agent/Theme/Symbol.h"

#include <QPushButton>

#include <optional>

namespace tallyfox {

enum class ButtonStyle {
    plain, ///< a coloured text
    bordered,
    borderedProminent, ///< filled: what the user came for
};

/// A text button in the program's own look. A text that does not fit is elided, and the tooltip shows all of it.
class PushButton : public QPushButton {
    Q_OBJECT

public:
    explicit PushButton(const QString& text, ButtonStyle style = ButtonStyle::bordered, QWidget* parent = nullptr);

    /// Puts a symbol before the text.
    void setSymbol(Symbol symbol);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] int sidePadding() const;
    [[nodiscard]] int symbolWidth() const;
    [[nodiscard]] QColor textColor() const;
    [[nodiscard]] QString elidedText() const;
    void paintFrame(QPainter& painter) const;
    void paintFocus(QPainter& painter) const;
    void paintLabel(QPainter& painter) const;

    ButtonStyle m_style;
    std::optional<Symbol> m_symbol;
};

} // namespace tallyfox
