#include "Tallyfox/Controls/PushButton.h"

#include "Tallyfox/Controls/FocusRing.h"
#include "Tallyfox/TallyfoxTheme.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace tallyfox {

namespace {

constexpr int buttonHeight = 26;
constexpr double radius = 6;
constexpr int symbolSide = 14;
constexpr int symbolSpacing = 6;

QColor mixed(const QColor& color, const QColor& other, float share)
{
    const auto mix = [share](float one, float two) { return one + (two - one) * share; };
    return QColor::fromRgbF(mix(color.redF(), other.redF()), mix(color.greenF(), other.greenF()),
                            mix(color.blueF(), other.blueF()));
}

/// Rounded down, half of all texts would end in an ellipsis.
int textWidth(const QString& text, const QFont& font)
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
    return m_symbol ? symbolSide + symbolSpacing : 0;
}

QSize PushButton::sizeHint() const
{
    return {textWidth(text(), font()) + symbolWidth() + 2 * sidePadding(), buttonHeight};
}

QSize PushButton::minimumSizeHint() const
{
    const int fewLetters = 4 * QFontMetrics{font()}.averageCharWidth();
    return {std::min(sizeHint().width(), fewLetters + symbolWidth() + 2 * sidePadding()), buttonHeight};
}

QString PushButton::shownText() const
{
    return QFontMetricsF{font()}.elidedText(text(), Qt::ElideRight, width() - symbolWidth() - 2 * sidePadding());
}

bool PushButton::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip || shownText() == text())
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
    if (!showsFocus(*this))
        return;
    paintFocusRing(painter, rect(), radius);
}

void PushButton::paintFrame(QPainter& painter) const
{
    const bool isHot = isEnabled() && (isDown() || underMouse());
    const float strength = isDown() ? 0.25F : 0.12F;
    QColor fill = Theme::surface();
    painter.setPen(QPen{Theme::line(), 1});
    if (m_style == ButtonStyle::borderedProminent) {
        fill = isEnabled() ? Theme::accent() : Theme::surfaceStrong();
        painter.setPen(Qt::NoPen);
    } else if (m_style == ButtonStyle::plain) {
        if (!isHot)
            return;
        fill = Theme::surfaceStrong();
        painter.setPen(Qt::NoPen);
    }
    painter.setBrush(isHot ? mixed(fill, Theme::ink(), strength / 2) : fill);
    const double inset = painter.pen().style() == Qt::NoPen ? 0 : 0.5;
    painter.drawRoundedRect(QRectF{rect()}.adjusted(inset, inset, -inset, -inset), radius, radius);
}

void PushButton::paintLabel(QPainter& painter) const
{
    const QString shown = shownText();
    const int labelWidth = textWidth(shown, font()) + symbolWidth();
    const QRect label = QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, {labelWidth, height()}, rect());
    if (m_symbol) {
        const QRect symbol{label.left(), (height() - symbolSide) / 2, symbolSide, symbolSide};
        drawSymbol(painter, *m_symbol, QStyle::visualRect(layoutDirection(), label, symbol), textColor());
    }
    painter.setFont(font());
    painter.setPen(textColor());
    const QRect beside = label.adjusted(symbolWidth(), 0, 0, 0);
    painter.drawText(QStyle::visualRect(layoutDirection(), label, beside), Qt::AlignCenter | Qt::TextSingleLine, shown);
}

} // namespace tallyfox
