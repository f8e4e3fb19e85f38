#include "Agent/Popover/ProviderStates.h"
#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Charts/HeatMap.h"
#include "Tallyfox/Agent/Charts/StackedBarChart.h"
#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/SegmentedPicker.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
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

/// The card with the three sums.
QWidget& summaryOf(QWidget& view)
{
    for (Card* card : view.findChildren<Card*>()) {
        if (!qobject_cast<TitledCard*>(card))
            return *card;
    }
    throw std::logic_error{"no summary"};
}

std::vector<std::string> textsOf(QWidget& view)
{
    std::vector<std::string> texts;
    for (const TextLabel* label : view.findChildren<TextLabel*>())
        texts.push_back(label->text().toStdString());
    return texts;
}

/// "Nov 21, 2026: 1.2K" for each cell.
std::vector<std::string> cellsOf(QWidget& view)
{
    std::vector<std::string> names;
    for (const AccessibleElement& cell : only<HeatMap>(view).accessibleElements())
        names.push_back(cell.name.toStdString());
    return names;
}

/// The colour in the middle of a cell.
QRgb cellColor(QWidget& view, std::size_t index)
{
    auto& map = only<HeatMap>(view);
    map.resize(map.sizeHint());
    return pixelOf(map, HeatMap::cellFrame(index).center());
}

UsageSnapshot bothProviders()
{
    return dailySnapshotOf({evenState(Provider::claude, 1'000), evenState(Provider::codex, 234)});
}

TEST(DashboardView, noStatesShowZeroSumsAndEmptyCharts)
{
    DashboardView view;
    view.setUsage(dailySnapshotOf({}));
    EXPECT_THAT(textsOf(summaryOf(view)),
                testing::ElementsAre("0", "Today Tokens", "0", "30D Total", "$0.00", "Est. cost"));
    EXPECT_TRUE(only<StackedBarChart>(view).data().days.empty());
    EXPECT_TRUE(cellsOf(view).empty());
}

TEST(DashboardView, sumsIncludeBothProviders)
{
    DashboardView view;
    view.setUsage(bothProviders());
    EXPECT_THAT(textsOf(summaryOf(view)),
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

TEST(DashboardView, rangeAffectsOnlyTheChart)
{
    DashboardView view;
    view.setUsage(bothProviders());
    const auto texts = textsOf(summaryOf(view));
    const auto cells = cellsOf(view);
    only<SegmentedPicker>(view).setCurrentIndex(2);
    EXPECT_EQ(only<StackedBarChart>(view).data().days.size(), 180U);
    only<SegmentedPicker>(view).setCurrentIndex(0);
    EXPECT_EQ(only<StackedBarChart>(view).data().days.size(), 7U);
    EXPECT_EQ(textsOf(summaryOf(view)), texts);
    EXPECT_EQ(cellsOf(view), cells);
    EXPECT_EQ(cells.size(), 365U);
}

TEST(DashboardView, selectedRangeSurvivesAPublication)
{
    DashboardView view;
    view.setUsage(bothProviders());
    only<SegmentedPicker>(view).setCurrentIndex(0);
    view.setUsage(dailySnapshotOf({evenState(Provider::claude, 5)}));
    EXPECT_EQ(only<StackedBarChart>(view).data().days.size(), 7U);
    EXPECT_EQ(only<StackedBarChart>(view).data().series.at(0).values.back().tokens, 5);
    EXPECT_TRUE(only<StackedBarChart>(view).data().series.at(1).values.empty());
}

TEST(DashboardView, publicationUpdatesEverything)
{
    DashboardView view;
    view.setUsage(dailySnapshotOf({}));
    view.setUsage(bothProviders());
    EXPECT_EQ(textsOf(summaryOf(view)).front(), "1.2K");
    EXPECT_EQ(cellsOf(view).back(), "Nov 21, 2026: 1.2K");
    EXPECT_EQ(cellColor(view, 364), Theme::accent().rgb());
}

TEST(DashboardView, daysWithoutTokensAreFaintCells)
{
    DashboardView view;
    view.setUsage(dailySnapshotOf({evenState(Provider::claude, 0), evenState(Provider::codex, 0)}));
    ASSERT_EQ(cellsOf(view).size(), 365U);
    for (const std::size_t cell : {0U, 180U, 364U})
        EXPECT_TRUE(isNear(cellColor(view, cell), over(Theme::canvas(), Theme::accent(), 0.08))) << cell;
}

TEST(DashboardView, heatMapIsEmptyIfFirstProviderHasNoDays)
{
    ProviderState empty;
    DashboardView view;
    view.setUsage(dailySnapshotOf({empty, evenState(Provider::codex, 3)}));
    EXPECT_TRUE(cellsOf(view).empty());
}

TEST(DashboardView, partsAreStackedInsideThePadding)
{
    DashboardView view;
    view.setUsage(bothProviders());
    view.resize(Theme::popoverWidth, view.sizeHint().height());
    view.show();
    const auto cards = view.findChildren<TitledCard*>();
    ASSERT_EQ(cards.size(), 2);
    const std::vector<QWidget*> parts{&only<SegmentedPicker>(view), &summaryOf(view), cards[0], cards[1]};
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

TEST(DashboardView, sumsHaveEqualWidthsAndDividers)
{
    DashboardView view;
    view.setUsage(dailySnapshotOf(
        {dailyState(Provider::claude, [](int daysAgo) { return daysAgo == 0 ? 1 : 999'999'999'999; })}));
    view.resize(Theme::popoverWidth, view.sizeHint().height());
    view.show();
    QWidget& summary = summaryOf(view);
    const auto labels = summary.findChildren<TextLabel*>();
    EXPECT_NEAR(labels[0]->parentWidget()->width(), labels[2]->parentWidget()->width(), 1);
    EXPECT_NEAR(labels[0]->parentWidget()->width(), labels[4]->parentWidget()->width(), 1);
    EXPECT_EQ(labels[1]->geometry().top() - labels[0]->geometry().bottom() - 1, 3);
    EXPECT_EQ(labels[0]->font(), Theme::headline());
    EXPECT_EQ(labels[1]->font(), Theme::caption2());
    EXPECT_EQ(labels[1]->color(), Theme::muted());
    const auto dividers = summary.findChildren<Divider*>();
    ASSERT_EQ(dividers.size(), 2);
    for (Divider* divider : dividers) {
        EXPECT_EQ(divider->size(), QSize(1, 34));
        EXPECT_EQ(pixelOf(*divider, {0, 33}), Theme::line().rgb());
    }
}

TEST(DashboardView, twelveDigitCountsAreNotElided)
{
    DashboardView view;
    view.setUsage(dailySnapshotOf({evenState(Provider::claude, 999'999'999'999)}));
    view.resize(Theme::popoverWidth, view.sizeHint().height());
    view.show();
    for (const TextLabel* label : view.findChildren<TextLabel*>())
        EXPECT_FALSE(label->isElided()) << label->text().toStdString();
}

TEST(DashboardView, chartAndHeatMapHaveAccessibleNames)
{
    DashboardView view;
    EXPECT_EQ(accessibleName(only<StackedBarChart>(view)), QStringLiteral("Token Dashboard"));
    EXPECT_EQ(accessibleName(only<HeatMap>(view)), QStringLiteral("Year Heatmap"));
}

} // namespace
} // namespace tallyfox::test
