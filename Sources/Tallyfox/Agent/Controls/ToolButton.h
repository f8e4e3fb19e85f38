#pragma once

#include "Tallyfox/Agent/Theme/Symbol.h"

#include <QPushButton>

namespace tallyfox {

/// A symbol to press, without a frame of its own. What it does stands under the pointer and in its accessible name.
class ToolButton : public QPushButton {
    Q_OBJECT

public:
    static constexpr int side = 24; ///< logical pixels

    ToolButton(Symbol symbol, const QString& help, QWidget* parent = nullptr);

    void setSymbol(Symbol symbol, const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
    QColor m_color;
};

/// A tool button that shows whether something is on, and asks for the other. Being pressed does not change it:
/// whether the thing came on is for its owner to say.
class ToggleToolButton : public ToolButton {
    Q_OBJECT

public:
    struct Symbols {
        Symbol off;
        Symbol on;
    };

    ToggleToolButton(Symbols symbols, const QString& help, QWidget* parent = nullptr);

    void setOn(bool isOn);

Q_SIGNALS:
    void toggleRequested();

protected:
    void nextCheckState() override;

private:
    void undoToggle(bool isChecked);

    Symbols m_symbols;
};

} // namespace tallyfox
