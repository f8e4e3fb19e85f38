#pragma once

#include "Tallyfox/Agent/Theme/Symbol.h"

#include <QWidget>

namespace tallyfox {

/// A large symbol in the middle of a filled circle, above a text that says what it stands for.
class SymbolDisc : public QWidget {
    Q_OBJECT

public:
    static constexpr int diameter = 76;
    static constexpr int symbolSize = 38;

    SymbolDisc(Symbol symbol, const QColor& color, const QColor& fill, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
    QColor m_color;
    QColor m_fill;
};

} // namespace tallyfox
