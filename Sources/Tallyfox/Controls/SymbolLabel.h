#pragma once

#include "Tallyfox/Controls/Symbol.h"

#include <QWidget>

namespace tallyfox {

/// A symbol that stands beside a text and says nothing of its own.
class SymbolLabel : public QWidget {
    Q_OBJECT

public:
    /// `size` in logical pixels; the symbol fills it.
    SymbolLabel(Symbol symbol, const QColor& color, QSize size, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
    QColor m_color;
};

} // namespace tallyfox
