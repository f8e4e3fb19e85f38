#include "Tallyfox/Agent/Popover/DashboardView.h"

#include "Tallyfox/Agent/Charts/HeatMap.h"
#include "Tallyfox/Agent/Charts/StackedBarChart.h"
#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/SegmentedPicker.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Popover/ChartPoint.h"
#include "Tallyfox/Agent/Popover/DashboardModel.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Engine/CommandLine/TokenText.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QVBoxLayout>

#include <array>

namespace tallyfox {

namespace {

constexpr std::array<std::int64_t, 3> ranges{7, 30, 180}; // days, in the order of the picker
constexpr int firstRange = 1;
constexpr int summaryHeightPadding = 12; // above and below the sums
constexpr int summaryPadding = 6; // beside and between them
constexpr int figureSpacing = 3; // between a sum and its title
constexpr int dividerHeight = 34;

TextLabel* centeredLabel(const QString& text, const QFont& font, const QColor& color, QWidget* parent)
{
    auto* label = new TextLabel{text, font, color, parent};
    label->setAlignment(Qt::AlignCenter);
    return label;
}

/// Returns the label of the sum; that of the title is below it.
TextLabel* addFigure(QHBoxLayout& row, const QString& title)
{
    QWidget* card = row.parentWidget();
    if (row.count() > 0) {
        auto* divider = new Divider{card, Qt::Vertical};
        divider->setFixedHeight(dividerHeight);
        row.addWidget(divider, 0, Qt::AlignCenter);
    }
    auto* figure = new QWidget{card};
    figure->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed); // equal shares, whatever the texts
    auto* stack = new QVBoxLayout{figure};
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(figureSpacing);
    TextLabel* value = centeredLabel({}, Theme::headline(), Theme::ink(), figure);
    stack->addWidget(value);
    stack->addWidget(centeredLabel(title, Theme::caption2(), Theme::muted(), figure));
    row.addWidget(figure, 1);
    return value;
}

std::vector<HeatCell> heatCells(const UsageSnapshot& snapshot)
{
    const std::vector<DailyUsage> days = DashboardModel::combinedDays(snapshot.states);
    const std::int64_t maxTokens = DashboardModel::maxTokens(days);
    std::vector<HeatCell> cells;
    cells.reserve(days.size());
    for (const DailyUsage& day : days) {
        cells.push_back(
            {toDate(day.date, snapshot.calendar), day.tokens, DashboardModel::heatOpacity(day.tokens, maxTokens)});
    }
    return cells;
}

} // namespace

DashboardView::DashboardView(QWidget* parent)
    : TabView(parent)
    , m_range(new SegmentedPicker{tr("Range"), {tr("7D"), tr("30D"), tr("6M")}, this})
{
    m_range->setCurrentIndex(firstRange);
    auto* layout = new QVBoxLayout{this};
    layout->setContentsMargins(Theme::tabPadding, Theme::tabPadding, Theme::tabPadding, Theme::tabPadding);
    layout->setSpacing(Theme::tabSpacing);
    layout->addWidget(m_range);
    layout->addWidget(makeSummary());
    layout->addWidget(makeChartCard());
    layout->addWidget(makeHeatMapCard());
    layout->addStretch();
    connect(m_range, &SegmentedPicker::currentIndexChanged, this, &DashboardView::drawChart);
}

/// Three sums side by side: today's tokens, those of the last 30 days, and what the latter might have cost.
QWidget* DashboardView::makeSummary()
{
    auto* card = new Card{this};
    auto* row = new QHBoxLayout{card};
    row->setContentsMargins(summaryPadding, summaryHeightPadding, summaryPadding, summaryHeightPadding);
    row->setSpacing(summaryPadding);
    m_today = addFigure(*row, tr("Today Tokens"));
    m_total = addFigure(*row, tr("30D Total"));
    m_cost = addFigure(*row, tr("Est. cost"));
    return card;
}

QWidget* DashboardView::makeChartCard()
{
    auto* card = new TitledCard{tr("Token Dashboard"), this};
    m_chart = new StackedBarChart{card};
    m_chart->setAccessibleName(tr("Token Dashboard"));
    card->content().addWidget(m_chart);
    return card;
}

QWidget* DashboardView::makeHeatMapCard()
{
    auto* card = new TitledCard{tr("Year Heatmap"), this};
    m_heatMap = new HeatMap{Theme::accent(), card};
    m_heatMap->setAccessibleName(tr("Year Heatmap"));
    card->content().addWidget(m_heatMap);
    return card;
}

void DashboardView::setUsage(const UsageSnapshot& snapshot)
{
    m_snapshot = snapshot;
    drawSummary();
    drawChart();
    m_heatMap->setCells(heatCells(m_snapshot));
}

void DashboardView::drawSummary()
{
    m_today->setText(tokenText(DashboardModel::todayTokens(m_snapshot.states), locale()));
    m_total->setText(tokenText(DashboardModel::totalTokens(m_snapshot.states), locale()));
    m_cost->setText(QString::fromStdString(DashboardModel::hypotheticalCost(m_snapshot.states)));
}

void DashboardView::drawChart()
{
    const std::int64_t range = ranges.at(static_cast<std::size_t>(m_range->currentIndex()));
    m_chart->setData(chartContent(DashboardModel::chartPoints(m_snapshot.states, range), m_snapshot.calendar));
}

} // namespace tallyfox
