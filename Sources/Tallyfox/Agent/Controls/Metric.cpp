#include "Tallyfox/Agent/Controls/Metric.h"

#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QEvent>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <numeric>

namespace tallyfox {

namespace {

constexpr int columnSpacing = 10;

} // namespace

Metric::Metric(QWidget* parent)
    : QWidget(parent)
    , m_title(new TextLabel{Theme::caption(), Theme::muted(), this})
    , m_value(new TextLabel{Theme::system(12, QFont::Medium), Theme::ink(), this})
{
    auto* column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(1);
    column->addWidget(m_title);
    column->addWidget(m_value);
}

void Metric::setMetric(const QString& title, const QString& value)
{
    m_title->setText(title);
    m_value->setText(value);
    m_value->setAccessibleDescription(title);
}

std::vector<int> columnWidths(const std::vector<int>& preferred, int available)
{
    const int count = static_cast<int>(preferred.size());
    const int equal = available / std::max(count, 1);
    const int total = std::accumulate(preferred.begin(), preferred.end(), 0);
    std::vector<int> widths(preferred.size(), equal);
    const auto isNarrow = [equal](int each) { return each <= equal; };
    if (std::all_of(preferred.begin(), preferred.end(), isNarrow))
        return widths;
    if (total <= available) {
        std::transform(preferred.begin(), preferred.end(), widths.begin(),
                       [&](int each) { return each + (available - total) / count; });
        return widths;
    }
    int left = available;
    int wide = count;
    for (const int each : preferred) {
        if (isNarrow(each)) {
            left -= each;
            --wide;
        }
    }
    std::transform(preferred.begin(), preferred.end(), widths.begin(),
                   [&](int each) { return isNarrow(each) ? each : std::min(each, left / wide); });
    return widths;
}

MetricRow::MetricRow(int count, QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    for (int index = 0; index < count; ++index)
        m_metrics.push_back(new Metric{this});
}

void MetricRow::setMetric(int index, const QString& title, const QString& value)
{
    m_metrics.at(static_cast<std::size_t>(index))->setMetric(title, value);
}

QSize MetricRow::sizeHint() const
{
    QSize size{-columnSpacing, 0};
    for (const Metric* metric : m_metrics) {
        const QSize column = metric->sizeHint();
        size = {size.width() + columnSpacing + column.width(), std::max(size.height(), column.height())};
    }
    return size;
}

QSize MetricRow::minimumSizeHint() const
{
    return {0, sizeHint().height()};
}

bool MetricRow::event(QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest) // a text has changed
        layOutMetrics();
    return QWidget::event(event);
}

void MetricRow::resizeEvent(QResizeEvent* /*event*/)
{
    layOutMetrics();
}

void MetricRow::layOutMetrics()
{
    std::vector<int> preferred;
    for (const Metric* metric : m_metrics)
        preferred.push_back(metric->sizeHint().width());
    const int gaps = columnSpacing * (static_cast<int>(m_metrics.size()) - 1);
    const std::vector<int> widths = columnWidths(preferred, width() - gaps);
    int left = 0;
    for (std::size_t index = 0; index < widths.size(); ++index) {
        const QRect frame{left, 0, widths[index], height()};
        m_metrics[index]->setGeometry(QStyle::visualRect(layoutDirection(), rect(), frame));
        left += widths[index] + columnSpacing;
    }
}

} // namespace tallyfox
