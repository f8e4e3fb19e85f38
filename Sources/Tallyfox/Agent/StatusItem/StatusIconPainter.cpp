#include "Tallyfox/Agent/StatusItem/StatusIconPainter.h"

#include "Tallyfox/Agent/Theme/Symbol.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <algorithm>
#include <cmath>

namespace tallyfox::StatusIconPainter {

namespace {

constexpr double cornerRadius = 0.19; // of the side, like all of the following
constexpr double sideMargin = 1.0 / 16;
constexpr double digitHeight = 0.66;
constexpr double symbolMargin = 0.1;

/// Stretched further than this, a single digit looks as if it were in another font.
constexpr double widestStretch = 1;

/// The outline of the number, its top left at the origin. An outline can be scaled to the pixel, a font cannot.
QPainterPath outline(const QString& number)
{
    QPainterPath path;
    path.addText(QPointF{}, Theme::system(100, QFont::Bold), number);
    return path.translated(-path.boundingRect().topLeft());
}

void drawNumber(QPainter& painter, const QString& number, int side)
{
    const QPainterPath path = outline(number);
    const QRectF bounds = path.boundingRect();
    if (bounds.isEmpty())
        return;
    // Whole pixels above and below keep the horizontal strokes sharp.
    const double height = std::round(side * digitHeight);
    const double top = std::floor((side - height) / 2);
    const double scaleY = height / bounds.height();
    const double widest = side - 2 * std::max(1.0, std::round(side * sideMargin));
    const double scaleX = std::min(scaleY * widestStretch, widest / bounds.width());
    painter.translate((side - bounds.width() * scaleX) / 2, top);
    painter.scale(scaleX, scaleY);
    painter.fillPath(path, Theme::cream());
}

} // namespace

QString number(std::optional<std::int64_t> percent)
{
    if (!percent)
        return {};
    if (*percent > 999)
        return QStringLiteral("99+");
    return *percent < -99 ? QStringLiteral("<0") : QString::number(*percent);
}

QImage image(const QString& number, int side)
{
    QImage result{side, side, QImage::Format_ARGB32_Premultiplied};
    result.fill(Qt::transparent);
    QPainter painter{&result};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::accent());
    painter.drawRoundedRect(result.rect(), side * cornerRadius, side * cornerRadius);
    if (number.isEmpty()) {
        const double margin = std::round(side * symbolMargin);
        drawSymbol(painter, Symbol::barChartFill, QRectF{result.rect()}.adjusted(margin, margin, -margin, -margin),
                   Theme::cream());
    } else {
        drawNumber(painter, number, side);
    }
    return result;
}

QIcon icon(const QString& number)
{
    QIcon result;
    for (const int side : sides)
        result.addPixmap(QPixmap::fromImage(image(number, side)));
    return result;
}

} // namespace tallyfox::StatusIconPainter
