#include "Tallyfox/Agent/Popover/DashboardView.h"

#include "Tallyfox/Agent/Charts/HeatMap.h"
#include "Tallyfox/Agent/Charts/StackedBarChart.h"
#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/SegmentedPicker.h"
#include "Tallyfox/Agent/Popover/ChartPoint.h"
#include "Tallyfox/Agent/Popover/DashboardModel.h"
#include "Tallyfox/Agent/Popover/DashboardSummary.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QVBoxLayout>

#include <array>

namespace tallyfox {

namespace {

constexpr std::array<std::int64_t, 3> ranges{7, 30, 180}; // days, in the order of the picker
constexpr int firstRange = 1;

std::vector<HeatCell> heatCells(const UsageSnapshot& snapshot)
{
    const std::vector<DailyUsage> days = DashboardModel::combinedDays(snapshot.states);
    const std::int64_t maxTokens = DashboardModel::maxTokens(days);
    std::vector<HeatCell> cells;
    cells.reserve(days.size());
    for (const DailyUsage& day : days) {
        cells.push_back(
            {dayOf(day.date, snapshot.calendar), day.tokens, DashboardModel::heatOpacity(day.tokens, maxTokens)});
    }
    return cells;
}

} // namespace

class DashboardView::Private {
public:
    explicit Private(DashboardView& view)
        : m_range(new SegmentedPicker{tr("Range"), {tr("7D"), tr("30D"), tr("6M")}, &view})
        , m_summary(new DashboardSummary{&view})
        , m_chartCard(new TitledCard{tr("Token Dashboard"), &view})
        , m_chart(new StackedBarChart{m_chartCard})
        , m_heatCard(new TitledCard{tr("Year Heatmap"), &view})
        , m_heatMap(new HeatMap{Theme::accent(), m_heatCard})
    {
        m_range->setCurrentIndex(firstRange);
        m_chart->setAccessibleName(tr("Token Dashboard"));
        m_chartCard->content().addWidget(m_chart);
        m_heatMap->setAccessibleName(tr("Year Heatmap"));
        m_heatCard->content().addWidget(m_heatMap);
        layOut(view);
        connect(m_range, &SegmentedPicker::currentIndexChanged, &view, [this] { drawChart(); });
    }

    void setUsage(const UsageSnapshot& snapshot)
    {
        m_snapshot = snapshot;
        m_summary->setStates(m_snapshot.states);
        drawChart();
        m_heatMap->setCells(heatCells(m_snapshot));
    }

private:
    void layOut(DashboardView& view)
    {
        auto* layout = new QVBoxLayout{&view};
        layout->setContentsMargins(Theme::tabPadding, Theme::tabPadding, Theme::tabPadding, Theme::tabPadding);
        layout->setSpacing(Theme::tabSpacing);
        for (QWidget* part : std::array<QWidget*, 4>{m_range, m_summary, m_chartCard, m_heatCard})
            layout->addWidget(part);
        layout->addStretch();
    }

    void drawChart()
    {
        const std::int64_t range = ranges.at(static_cast<std::size_t>(m_range->currentIndex()));
        m_chart->setData(chartContent(DashboardModel::chartPoints(m_snapshot.states, range), m_snapshot.calendar));
    }

    UsageSnapshot m_snapshot;
    SegmentedPicker* m_range;
    DashboardSummary* m_summary;
    TitledCard* m_chartCard;
    StackedBarChart* m_chart;
    TitledCard* m_heatCard;
    HeatMap* m_heatMap;
};

DashboardView::DashboardView(QWidget* parent)
    : TabView(parent)
    , m(std::make_unique<Private>(*this))
{ }

DashboardView::~DashboardView() = default;

void DashboardView::setUsage(const UsageSnapshot& snapshot)
{
    m->setUsage(snapshot);
}

} // namespace tallyfox
