#pragma once

#include "Tallyfox/Agent/Popover/TabView.h"

namespace tallyfox {

class HeatMap;
class SegmentedPicker;
class StackedBarChart;
class TextLabel;

/// The second tab: three sums, a chart of the daily tokens, and a heat map of the year.
class DashboardView : public TabView {
    Q_OBJECT

public:
    explicit DashboardView(QWidget* parent = nullptr);

    void setUsage(const UsageSnapshot& snapshot) override;

private:
    [[nodiscard]] QWidget* makeSummary();
    [[nodiscard]] QWidget* makeChartCard();
    [[nodiscard]] QWidget* makeHeatMapCard();
    void drawSummary();
    void drawChart();

    UsageSnapshot m_snapshot;
    SegmentedPicker* m_range;
    TextLabel* m_today = nullptr;
    TextLabel* m_total = nullptr;
    TextLabel* m_cost = nullptr;
    StackedBarChart* m_chart = nullptr;
    HeatMap* m_heatMap = nullptr;
};

} // namespace tallyfox
