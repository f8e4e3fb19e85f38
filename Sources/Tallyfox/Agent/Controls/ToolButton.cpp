#include "Tallyfox/Agent/Controls/ToolButton.h"

#include "Tallyfox/Agent/Controls/Painting.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QPainter>
#include <QSignalBlocker>

namespace tallyfox {

namespace {

constexpr int symbolInset = 4;

} // namespace

ToolButton::ToolButton(Symbol symbol, const QString& help, QWidget* parent)
    : QPushButton(parent)
    , m_symbol(symbol)
    , m_color(Theme::ink())
{
    setFixedSize(side, side);
    setAttribute(Qt::WA_Hover);
    setAutoDefault(true); // the return key presses it as the space bar does
    setToolTip(help);
    setAccessibleName(help);
}

void ToolButton::setSymbol(Symbol symbol, const QColor& color)
{
    if (m_symbol == symbol && m_color == color)
        return;
    m_symbol = symbol;
    m_color = color;
    update();
}

void ToolButton::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    if (isEnabled() && (isDown() || underMouse())) {
        painter.setBrush(isDown() ? Theme::line() : Theme::surfaceStrong());
        painter.setPen(Qt::NoPen);
        painter.drawRoundedRect(rect(), Theme::controlRadius, Theme::controlRadius);
    }
    const QColor color = isEnabled() ? m_color : Theme::withOpacity(Theme::muted(), Theme::disabledOpacity);
    drawSymbol(painter, m_symbol, rect().adjusted(symbolInset, symbolInset, -symbolInset, -symbolInset), color);
    if (showsFocus(*this))
        paintFocusRing(painter, rect(), Theme::controlRadius);
}

ToggleToolButton::ToggleToolButton(Symbols symbols, const QString& help, QWidget* parent)
    : ToolButton(symbols.off, help, parent)
    , m_symbols(symbols)
{
    setCheckable(true);
    connect(this, &QPushButton::clicked, this, &ToggleToolButton::toggleRequested);
    connect(this, &QPushButton::toggled, this, &ToggleToolButton::undoToggle);
}

void ToggleToolButton::setOn(bool isOn)
{
    const QSignalBlocker blocker{this};
    setChecked(isOn);
    setSymbol(isOn ? m_symbols.on : m_symbols.off, isOn ? Theme::accent() : Theme::ink());
}

void ToggleToolButton::nextCheckState()
{
    // A press only emits a request.
}

/// The toggle action of a screen reader checks the button without pressing it.
void ToggleToolButton::undoToggle(bool isChecked)
{
    {
        const QSignalBlocker blocker{this};
        setChecked(!isChecked);
    }
    Q_EMIT toggleRequested();
}

} // namespace tallyfox
