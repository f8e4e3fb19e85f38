#include "Tallyfox/Agent/Theme/Symbol.h"

#include <QImage>
#include <QPaintDevice>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>
#include <array>
#include <cmath>

namespace tallyfox {

namespace {

constexpr std::array fileNames{
    "arrow-clockwise", "bar-chart-fill", "bell",        "chevron-right", "code-slash",  "cup-hot",
    "cup-hot-fill",    "diamond",        "folder-plus", "gear",          "info-circle", "person-circle",
    "plus-lg",         "shield-lock",    "stars",       "trophy-fill",   "wind",
};

QString resourcePath(Symbol symbol)
{
    const char* name = fileNames.at(static_cast<std::size_t>(symbol));
    return QStringLiteral(":/symbols/%1.svg").arg(QLatin1String(name));
}

/// The SVG is black and serves as a mask for the colour.
QPixmap renderPixmap(Symbol symbol, int pixels, const QColor& color)
{
    QImage image{pixels, pixels, QImage::Format_ARGB32_Premultiplied};
    image.fill(Qt::transparent);
    QPainter painter{&image};
    QSvgRenderer{resourcePath(symbol)}.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    return QPixmap::fromImage(std::move(image));
}

/// Rendering an SVG takes about a hundred times as long as drawing the result.
QPixmap cachedPixmap(Symbol symbol, int pixels, const QColor& color)
{
    const QString key =
        QStringLiteral("tallyfox/%1/%2/%3").arg(static_cast<int>(symbol)).arg(pixels).arg(color.name(QColor::HexArgb));
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = renderPixmap(symbol, pixels, color);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

} // namespace

void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& frame, const QColor& color)
{
    const double scale = painter.device()->devicePixelRatioF();
    const double side = std::min(frame.width(), frame.height());
    const int pixels = static_cast<int>(std::lround(side * scale));
    if (pixels <= 0)
        return;
    QPixmap pixmap = cachedPixmap(symbol, pixels, color);
    pixmap.setDevicePixelRatio(scale);
    // At whole device pixels, as the edges would blur between them.
    const auto onPixel = [scale](double position) { return std::round(position * scale) / scale; };
    painter.drawPixmap(QPointF{onPixel(frame.center().x() - side / 2), onPixel(frame.center().y() - side / 2)}, pixmap);
}

} // namespace tallyfox
