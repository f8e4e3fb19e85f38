#include "Tallyfox/Agent/Charts/ChartLegend.h"

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QFontMetrics>
#include <QPainter>

namespace tallyfox::ChartLegend {

namespace {

constexpr double dotSize = 7;
constexpr double gapInEntry = 5;
constexpr double gapOfEntries = 12;

} // namespace

int height()
{
    return QFontMetrics{Theme::caption2()}.height();
}

void paint(QPainter& painter, const QRectF& frame, std::span<const ChartSeries> series)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(Theme::caption2());
    double left = frame.left();
    for (const ChartSeries& entry : series) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(entry.color);
        painter.drawEllipse(QRectF{left, frame.center().y() - dotSize / 2, dotSize, dotSize});
        painter.setPen(Theme::muted());
        const QRectF text = frame.adjusted(left - frame.left() + dotSize + gapInEntry, 0, 0, 0);
        QRectF drawn;
        painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, entry.name, &drawn);
        left = drawn.right() + gapOfEntries;
    }
    painter.restore();
}

} // namespace tallyfox::ChartLegend
