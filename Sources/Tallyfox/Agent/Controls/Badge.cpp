#include "Tallyfox/Agent/Controls/Badge.h"

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QPainter>

namespace tallyfox {

namespace {

constexpr int sidePadding = 6;
constexpr int upperPadding = 3;
constexpr double radius = 5;

} // namespace

Badge::Badge(QWidget* parent)
    : Badge(QString{}, Theme::muted(), parent)
{ }

Badge::Badge(const QString& text, const QColor& color, QWidget* parent)
    : TextLabel(text, Theme::system(Theme::caption2().pixelSize(), QFont::Medium), color, parent)
{
    setContentsMargins(sidePadding, upperPadding, sidePadding, upperPadding);
}

void Badge::paintEvent(QPaintEvent* event)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Theme::withOpacity(color(), Theme::badgeOpacity));
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(rect(), radius, radius);
    painter.end();
    TextLabel::paintEvent(event);
}

} // namespace tallyfox
