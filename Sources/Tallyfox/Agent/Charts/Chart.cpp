#include "Tallyfox/Agent/Charts/Chart.h"

#include "Tallyfox/Agent/Theme/DateFormats.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Engine/CommandLine/TokenText.h"
#include "TallyfoxCore/Usage/TokenSum.h"

#include <QFontMetrics>
#include <QHelpEvent>
#include <QLocale>
#include <QPainter>
#include <QToolTip>

#include <span>
#include <utility>

namespace tallyfox {

namespace {

constexpr int legendGap = 6; // between the plot and the legend
constexpr double dotSize = 7;
constexpr double gapInEntry = 5;
constexpr double gapOfEntries = 12;

QString shortText(std::int64_t tokens)
{
    return tokenText(tokens, QLocale{});
}

/// In logical pixels.
int legendHeight()
{
    return QFontMetrics{Theme::caption2()}.height();
}

/// Draws one row of dots and series names, starting at the left of `frame`.
void paintLegend(QPainter& painter, const QRectF& frame, std::span<const ChartSeries> series)
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

} // namespace

Chart::Chart(int height, QWidget* parent)
    : QWidget(parent)
{
    setFixedHeight(height);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Chart::setData(ChartData data)
{
    if (data == m_data)
        return;
    m_data = std::move(data);
    accessibleElementsChanged(*this);
    update();
}

const ChartData& Chart::data() const
{
    return m_data;
}

QString Chart::tooltip(std::size_t day) const
{
    QString text = DayFormat{}.text(m_data.days.at(day));
    for (const ChartSeries& series : m_data.series) {
        for (const ChartValue& value : series.values) {
            if (value.day == day)
                text += QLatin1Char{'\n'} + tr("%1: %2").arg(series.name, shortText(value.tokens));
        }
    }
    return text;
}

QAccessible::Role Chart::accessibleRole() const
{
    return QAccessible::Chart;
}

std::vector<AccessibleElement> Chart::accessibleElements() const
{
    const DayFormat format;
    std::vector<AccessibleElement> elements;
    for (const ChartSeries& series : m_data.series) {
        if (!series.values.empty())
            elements.push_back(makeElement(series, format));
    }
    return elements;
}

AccessibleElement Chart::makeElement(const ChartSeries& series, const DayFormat& format) const
{
    AccessibleElement list;
    list.role = QAccessible::List;
    list.frame = plotFrame().toAlignedRect();
    list.children.reserve(series.values.size());
    std::int64_t sum = 0;
    for (const ChartValue& value : series.values) {
        sum = tokenSum(sum, value.tokens);
        const QString tokens = shortText(value.tokens);
        list.children.push_back({tr("%1: %2").arg(format.text(m_data.days.at(value.day)), tokens),
                                 tokens,
                                 QAccessible::ListItem,
                                 valueFrame(series, value).toAlignedRect(),
                                 {}});
    }
    list.value = shortText(sum);
    list.name = tr("%1: %2").arg(series.name, list.value);
    return list;
}

QRectF Chart::plotFrame() const
{
    return rect().adjusted(0, 0, 0, -(legendHeight() + legendGap));
}

bool Chart::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    if (const auto day = dayAt(help->pos()))
        QToolTip::showText(help->globalPos(), tooltip(*day), this, dayFrame(*day).toAlignedRect());
    else
        QToolTip::hideText();
    return true;
}

std::optional<std::size_t> Chart::dayAt(QPointF position) const
{
    for (std::size_t day = 0; day < m_data.days.size(); ++day) {
        if (dayFrame(day).contains(position))
            return day;
    }
    return std::nullopt;
}

void Chart::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    paintPlot(painter);
    const double legend = legendHeight();
    paintLegend(painter, QRectF{0, height() - legend, double(width()), legend}, m_data.series);
}

void Chart::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    accessibleElementsChanged(*this);
}

} // namespace tallyfox
