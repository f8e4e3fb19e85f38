#pragma once

#include "Tallyfox/Agent/Theme/Symbol.h"

#include <QPushButton>

namespace tallyfox {

/// A button with a symbol and no frame. `help` is its tooltip and its accessible name.
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

/// A tool button that shows whether something is on. A press only requests the other state: the owner calls `setOn`
/// when the state has changed.
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
