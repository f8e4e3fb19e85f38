#include "Tallyfox/Agent/Controls/TextLabel.h"

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace tallyfox {

namespace {

constexpr int badgeSidePadding = 6;
constexpr int badgeUpperPadding = 3;
constexpr double badgeRadius = 5;

} // namespace

QStringList fittedLines(const QString& text, const QFont& font, int width, int maximumLines)
{
    QTextLayout layout{text, font};
    QTextOption option;
    option.setWrapMode(QTextOption::WordWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    int start = 0;
    while (start < text.size() && lines.size() + 1 < maximumLines) {
        QTextLine line = layout.createLine();
        line.setLineWidth(width);
        lines << text.mid(line.textStart(), line.textLength()).trimmed();
        start = line.textStart() + line.textLength();
    }
    layout.endLayout();
    if (layout.minimumWidth() > width) { // a single word is wider
        lines.clear();
        start = 0;
    }
    if (start < text.size())
        lines << QFontMetricsF{font}.elidedText(text.mid(start), Qt::ElideRight, width);
    return lines;
}

TextLabel::TextLabel(const QFont& font, const QColor& color, QWidget* parent)
    : TextLabel(QString{}, font, color, parent)
{ }

TextLabel::TextLabel(const QString& text, const QFont& font, const QColor& color, QWidget* parent)
    : QLabel(text, parent)
    , m_color(color)
{
    setTextFormat(Qt::PlainText);
    setFont(font);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void TextLabel::setColor(const QColor& color)
{
    if (m_color == color)
        return;
    m_color = color;
    update();
}

const QColor& TextLabel::color() const
{
    return m_color;
}

void TextLabel::setMaximumLines(int lines)
{
    m_maximumLines = std::max(lines, 1);
    QSizePolicy policy{QSizePolicy::Preferred, m_maximumLines > 1 ? QSizePolicy::Preferred : QSizePolicy::Fixed};
    policy.setHeightForWidth(m_maximumLines > 1);
    setSizePolicy(policy);
    updateGeometry();
}

bool TextLabel::isElided() const
{
    const QStringList shown = lines();
    if (shown.isEmpty())
        return false;
    const QString& last = shown.back(); // empty if not even an ellipsis fits
    return last.isEmpty() || (last.endsWith(QChar{0x2026}) && !text().endsWith(last));
}

int TextLabel::horizontalMargins() const
{
    return contentsMargins().left() + contentsMargins().right();
}

int TextLabel::verticalMargins() const
{
    return contentsMargins().top() + contentsMargins().bottom();
}

QSize TextLabel::sizeHint() const
{
    const QFontMetricsF metrics{font()};
    // Rounded up: rounded down, half of all texts would be elided.
    const int width = static_cast<int>(std::ceil(metrics.horizontalAdvance(text())));
    return {width + horizontalMargins(), QFontMetrics{font()}.height() + verticalMargins()};
}

QSize TextLabel::minimumSizeHint() const
{
    const QFontMetrics metrics{font()};
    const int fewLetters = 3 * metrics.averageCharWidth() + metrics.horizontalAdvance(QChar{0x2026});
    return {std::min(sizeHint().width(), fewLetters + horizontalMargins()), metrics.height() + verticalMargins()};
}

bool TextLabel::hasHeightForWidth() const
{
    return m_maximumLines > 1;
}

int TextLabel::heightForWidth(int width) const
{
    const auto count = fittedLines(text(), font(), width - horizontalMargins(), m_maximumLines).size();
    return std::max(static_cast<int>(count), 1) * QFontMetrics{font()}.height() + verticalMargins();
}

QStringList TextLabel::lines() const
{
    return fittedLines(text(), font(), contentsRect().width(), m_maximumLines);
}

bool TextLabel::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip || !isElided())
        return QLabel::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
    return true;
}

void TextLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    painter.setFont(font());
    painter.setPen(m_color);
    const Qt::Alignment aligned = QStyle::visualAlignment(layoutDirection(), alignment());
    const QStringList shown = lines();
    const int lineHeight = QFontMetrics{font()}.height();
    const QSize size{contentsRect().width(), static_cast<int>(shown.size()) * lineHeight};
    QRect line = QStyle::alignedRect(Qt::LeftToRight, aligned, size, contentsRect());
    line.setHeight(lineHeight);
    for (const QString& text : shown) {
        painter.drawText(line, static_cast<int>(aligned | Qt::TextSingleLine), text);
        line.translate(0, lineHeight);
    }
}

Badge::Badge(QWidget* parent)
    : Badge(QString{}, Theme::muted(), parent)
{ }

Badge::Badge(const QString& text, const QColor& color, QWidget* parent)
    : TextLabel(text, Theme::system(Theme::caption2().pixelSize(), QFont::Medium), color, parent)
{
    setContentsMargins(badgeSidePadding, badgeUpperPadding, badgeSidePadding, badgeUpperPadding);
}

void Badge::paintEvent(QPaintEvent* event)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Theme::withOpacity(color(), Theme::badgeOpacity));
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(rect(), badgeRadius, badgeRadius);
    painter.end();
    TextLabel::paintEvent(event);
}

} // namespace tallyfox
