#include "Tallyfox/Agent/Controls/PushButton.h"

#include "Tallyfox/Agent/Controls/Painting.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace tallyfox {

namespace {

constexpr int buttonSymbolSide = 14;
constexpr int symbolSpacing = 6;

/// Rounded up: rounded down, half of all texts would be elided.
int wholeWidth(const QString& text, const QFont& font)
{
    return static_cast<int>(std::ceil(QFontMetricsF{font}.horizontalAdvance(text)));
}

} // namespace

PushButton::PushButton(const QString& text, ButtonStyle style, QWidget* parent)
    : QPushButton(text, parent)
    , m_style(style)
{
    setFont(Theme::system(Theme::body().pixelSize() - 1, QFont::Medium));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    setAutoDefault(true); // the return key presses it as the space bar does
}

void PushButton::setSymbol(Symbol symbol)
{
    m_symbol = symbol;
    updateGeometry();
    update();
}

int PushButton::sidePadding() const
{
    return m_style == ButtonStyle::plain ? 4 : 12;
}

int PushButton::symbolWidth() const
{
    return m_symbol ? buttonSymbolSide + symbolSpacing : 0;
}

QSize PushButton::sizeHint() const
{
    return {wholeWidth(text(), font()) + symbolWidth() + 2 * sidePadding(), Theme::controlHeight};
}

QSize PushButton::minimumSizeHint() const
{
    const int fewLetters = 4 * QFontMetrics{font()}.averageCharWidth();
    return {std::min(sizeHint().width(), fewLetters + symbolWidth() + 2 * sidePadding()), Theme::controlHeight};
}

QString PushButton::elidedText() const
{
    return QFontMetricsF{font()}.elidedText(text(), Qt::ElideRight, width() - symbolWidth() - 2 * sidePadding());
}

bool PushButton::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip || elidedText() == text())
        return QPushButton::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
    return true;
}

QColor PushButton::textColor() const
{
    if (!isEnabled())
        return Theme::withOpacity(Theme::muted(), Theme::disabledOpacity);
    if (m_style == ButtonStyle::borderedProminent)
        return Theme::cream();
    const QColor color = m_style == ButtonStyle::plain ? Theme::accent() : Theme::ink();
    return isDown() ? Theme::withOpacity(color, 0.7) : color;
}

void PushButton::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    paintFrame(painter);
    paintLabel(painter);
    if (showsFocus(*this))
        paintFocus(painter);
}

void PushButton::paintFrame(QPainter& painter) const
{
    const QRectF frame = rect();
    painter.setPen(Qt::NoPen);
    if (m_style == ButtonStyle::bordered) {
        painter.setPen(QPen{Theme::line(), 1});
        painter.setBrush(Theme::surface());
        painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), Theme::controlRadius, Theme::controlRadius);
        painter.setPen(Qt::NoPen);
    } else if (m_style == ButtonStyle::borderedProminent) {
        painter.setBrush(isEnabled() ? Theme::accent() : Theme::surfaceStrong());
        painter.drawRoundedRect(frame, Theme::controlRadius, Theme::controlRadius);
    }
    if (!isEnabled() || !(isDown() || underMouse()))
        return;
    painter.setBrush(Theme::withOpacity(Theme::ink(), isDown() ? 0.14 : 0.06));
    painter.drawRoundedRect(frame, Theme::controlRadius, Theme::controlRadius);
}

/// A ring in the accent colour would not be visible on a prominent button.
void PushButton::paintFocus(QPainter& painter) const
{
    if (m_style == ButtonStyle::borderedProminent)
        paintFocusRing(painter, rect().adjusted(2, 2, -2, -2), Theme::controlRadius - 2, Theme::cream());
    else
        paintFocusRing(painter, rect(), Theme::controlRadius);
}

void PushButton::paintLabel(QPainter& painter) const
{
    const QString shown = elidedText();
    const int labelWidth = wholeWidth(shown, font()) + symbolWidth();
    const QRect label = QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, {labelWidth, height()}, rect());
    if (m_symbol) {
        const QRect symbol{label.left(), (height() - buttonSymbolSide) / 2, buttonSymbolSide, buttonSymbolSide};
        drawSymbol(painter, *m_symbol, QStyle::visualRect(layoutDirection(), label, symbol), textColor());
    }
    painter.setFont(font());
    painter.setPen(textColor());
    const QRect beside = label.adjusted(symbolWidth(), 0, 0, 0);
    painter.drawText(QStyle::visualRect(layoutDirection(), label, beside), Qt::AlignCenter | Qt::TextSingleLine, shown);
}

} // namespace tallyfox
