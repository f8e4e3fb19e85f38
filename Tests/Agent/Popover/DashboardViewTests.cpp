#include "Agent/Popover/ProviderStates.h"
#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Charts/HeatMap.h"
#include "Tallyfox/Agent/Charts/StackedBarChart.h"
#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/SegmentedPicker.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Popover/DashboardSummary.h"
#include "Tallyfox/Agent/Popover/DashboardView.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QRadioButton>
#include <gmock/gmock.h>

namespace tallyfox::test {
namespace {

template <class Widget> Widget& only(QWidget& view)
{
    const auto found = view.findChildren<Widget*>();
    EXPECT_EQ(found.size(), 1);
    return *found.front();
}

std::vector<std::string> textsOf(QWidget& view)
{
    std::vector<std::string> texts;
    for (const TextLabel* label : view.findChildren<TextLabel*>())
        texts.push_back(label->text().toStdString());
    return texts;
}

UsageSnapshot bothProviders()
{
    return dailySnapshotOf({evenState(Provider::claude, 1'000), evenState(Provider::codex, 234)});
}

TEST(DashboardView, withoutStatesSumsAreZeroAndNothingIsDrawn)
{
    DashboardView view;
    view.setUsage(dailySnapshotOf({}));
    EXPECT_THAT(textsOf(only<DashboardSummary>(view)),
                testing::ElementsAre("0", "Today Tokens", "0", "30D Total", "$0.00", "Est. cost"));
    EXPECT_TRUE(only<StackedBarChart>(view).data().days.empty());
    EXPECT_TRUE(only<HeatMap>(view).cells().empty());
}

TEST(DashboardView, sumsAreThoseOfBothProviders)
{
    DashboardView view;
    view.setUsage(bothProviders());
    EXPECT_THAT(textsOf(only<DashboardSummary>(view)),
                testing::ElementsAre("1.2K", "Today Tokens", "37.0K", "30D Total", "$0.11", "Est. cost"));
}

TEST(DashboardView, startsWithThirtyDays)
{
    DashboardView view;
    view.setUsage(bothProviders());
    EXPECT_EQ(only<SegmentedPicker>(view).currentIndex(), 1);
    EXPECT_EQ(accessibleName(only<SegmentedPicker>(view)), QStringLiteral("Range"));
    EXPECT_EQ(only<StackedBarChart>(view).data().days.size(), 30U);
    QStringList labels;
    for (const QRadioButton* segment : view.findChildren<QRadioButton*>())
        labels << segment->text();
    EXPECT_EQ(labels, (QStringList{QStringLiteral("7D"), QStringLiteral("30D"), QStringLiteral("6M")}));
}

TEST(DashboardView, rangeChangesTheChartAlone)
{
    DashboardView view;
    view.setUsage(bothProviders());
    const auto texts = textsOf(only<DashboardSummary>(view));
    const auto cells = only<HeatMap>(view).cells();
    only<SegmentedPicker>(view).setCurrentIndex(2);
    EXPECT_EQ(only<StackedBarChart>(view).data().days.size(), 180U);
    only<SegmentedPicker>(view).setCurrentIndex(0);
    EXPECT_EQ(only<StackedBarChart>(view).data().days.size(), 7U);
    EXPECT_EQ(textsOf(only<DashboardSummary>(view)), texts);
    EXPECT_EQ(only<HeatMap>(view).cells(), cells);
    EXPECT_EQ(cells.size(), 365U);
}

TEST(DashboardView, chosenRangeOutlastsAPublication)
{
    DashboardView view;
    view.setUsage(bothProviders());
    only<SegmentedPicker>(view).setCurrentIndex(0);
    view.setUsage(dailySnapshotOf({evenState(Provider::claude, 5)}));
    EXPECT_EQ(only<StackedBarChart>(view).data().days.size(), 7U);
    EXPECT_EQ(only<StackedBarChart>(view).data().series.at(0).values.back().tokens, 5);
    EXPECT_TRUE(only<StackedBarChart>(view).data().series.at(1).values.empty());
}

TEST(DashboardView, publicationRedrawsEverything)
{
    DashboardView view;
    view.setUsage(dailySnapshotOf({}));
    view.setUsage(bothProviders());
    EXPECT_EQ(textsOf(only<DashboardSummary>(view)).front(), "1.2K");
    EXPECT_EQ(only<HeatMap>(view).cells().back(), (HeatCell{QDate{2026, 11, 21}, 1'234, 1.0}));
}

TEST(DashboardView, allDaysZeroAreFaintCells)
{
    DashboardView view;
    view.setUsage(dailySnapshotOf({evenState(Provider::claude, 0), evenState(Provider::codex, 0)}));
    for (const HeatCell& cell : only<HeatMap>(view).cells())
        EXPECT_EQ(cell.opacity, 0.08);
}

TEST(DashboardView, firstProviderWithoutDaysLeavesTheHeatMapEmpty)
{
    ProviderState empty;
    DashboardView view;
    view.setUsage(dailySnapshotOf({empty, evenState(Provider::codex, 3)}));
    EXPECT_TRUE(only<HeatMap>(view).cells().empty());
}

TEST(DashboardView, partsStandBelowEachOtherInsideThePadding)
{
    DashboardView view;
    view.setUsage(bothProviders());
    view.resize(Theme::popoverWidth, view.sizeHint().height());
    view.show();
    const auto cards = view.findChildren<TitledCard*>();
    ASSERT_EQ(cards.size(), 2);
    const std::vector<QWidget*> parts{&only<SegmentedPicker>(view), &only<DashboardSummary>(view), cards[0], cards[1]};
    int top = Theme::tabPadding;
    for (const QWidget* part : parts) {
        EXPECT_EQ(part->geometry().top(), top);
        EXPECT_EQ(part->geometry().left(), Theme::tabPadding);
        EXPECT_EQ(part->width(), 396);
        top += part->height() + Theme::tabSpacing;
    }
    EXPECT_EQ(only<StackedBarChart>(view).size(), (QSize{370, 220}));
    EXPECT_GE(only<HeatMap>(view).width(), 369);
    EXPECT_EQ(textsOf(*cards[0]), std::vector<std::string>{"Token Dashboard"});
    EXPECT_EQ(textsOf(*cards[1]), std::vector<std::string>{"Year Heatmap"});
}

TEST(DashboardView, figuresHaveEqualSharesAroundDividersOfThirtyFour)
{
    DashboardView view;
    view.setUsage(dailySnapshotOf(
        {dailyState(Provider::claude, [](int daysAgo) { return daysAgo == 0 ? 1 : 999'999'999'999; })}));
    view.resize(Theme::popoverWidth, view.sizeHint().height());
    view.show();
    DashboardSummary& summary = only<DashboardSummary>(view);
    const auto labels = summary.findChildren<TextLabel*>();
    EXPECT_NEAR(labels[0]->parentWidget()->width(), labels[2]->parentWidget()->width(), 1);
    EXPECT_NEAR(labels[0]->parentWidget()->width(), labels[4]->parentWidget()->width(), 1);
    EXPECT_EQ(labels[1]->geometry().top() - labels[0]->geometry().bottom() - 1, 3);
    EXPECT_EQ(labels[0]->font(), Theme::headline());
    EXPECT_EQ(labels[1]->font(), Theme::caption2());
    EXPECT_EQ(labels[1]->color(), Theme::muted());
    int dividers = 0;
    for (const QFrame* child : summary.findChildren<QFrame*>(QString{}, Qt::FindDirectChildrenOnly))
        dividers += child->size() == QSize{1, 34} ? 1 : 0;
    EXPECT_EQ(dividers, 2);
}

TEST(DashboardView, twelveDigitCountsAreNotCutOff)
{
    DashboardView view;
    view.setUsage(dailySnapshotOf({evenState(Provider::claude, 999'999'999'999)}));
    view.resize(Theme::popoverWidth, view.sizeHint().height());
    view.show();
    for (const TextLabel* label : view.findChildren<TextLabel*>())
        EXPECT_FALSE(label->isElided()) << label->text().toStdString();
}

TEST(DashboardView, chartAndHeatMapAreNamedForAScreenReader)
{
    DashboardView view;
    EXPECT_EQ(accessibleName(only<StackedBarChart>(view)), QStringLiteral("Token Dashboard"));
    EXPECT_EQ(accessibleName(only<HeatMap>(view)), QStringLiteral("Year Heatmap"));
}

} // namespace
} // namespace tallyfox::test
