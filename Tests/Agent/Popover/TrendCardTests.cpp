#include "Agent/Popover/ProviderStates.h"
#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Charts/LineChart.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Popover/TrendCard.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

LineChart& chartOf(TrendCard& card)
{
    return *card.findChild<LineChart*>();
}

TEST(TrendCard, headerIsTitleAndChevronAtTheRight)
{
    TrendCard card;
    card.resize(396, card.sizeHint().height());
    const auto* title = card.findChild<TextLabel*>();
    EXPECT_EQ(title->text(), QStringLiteral("30D Trend"));
    EXPECT_EQ(title->font(), Theme::headline());
    card.show();
    const auto* chevron = card.findChild<SymbolView*>();
    EXPECT_EQ(chevron->geometry().right() + 1, 396 - Theme::cardPadding);
    int drawn = 0;
    for (int x = chevron->x(); x < chevron->geometry().right(); ++x)
        drawn += pixelOf(card, {x, chevron->geometry().center().y()}) != Theme::surface().rgb() ? 1 : 0;
    EXPECT_GT(drawn, 0);
}

TEST(TrendCard, chartFillsTheWidthInsideThePadding)
{
    TrendCard card;
    card.resize(396, card.sizeHint().height());
    card.show();
    EXPECT_EQ(chartOf(card).geometry().left(), Theme::cardPadding);
    EXPECT_EQ(chartOf(card).size(), (QSize{370, 92}));
    EXPECT_EQ(chartOf(card).geometry().bottom() + 1, card.height() - Theme::cardPadding);
}

TEST(TrendCard, isASheetWithABorder)
{
    TrendCard card;
    card.resize(396, card.sizeHint().height());
    EXPECT_EQ(pixelOf(card, {30, 8}), Theme::surface().rgb());
    EXPECT_TRUE(isNear(pixelOf(card, {200, 0}), over(Theme::surface(), Theme::line(), Theme::cardBorderOpacity))
                || isNear(pixelOf(card, {200, 0}), over(Theme::canvas(), Theme::line(), Theme::cardBorderOpacity)));
}

TEST(TrendCard, withoutStatesTheChartIsEmptyAndKeepsItsHeight)
{
    TrendCard card;
    card.setStates({}, Calendar::utc());
    EXPECT_TRUE(chartOf(card).data().days.empty());
    EXPECT_EQ(chartOf(card).height(), 92);
}

TEST(TrendCard, oneStateIsOneLineOfThirtyPoints)
{
    TrendCard card;
    card.setStates({evenState(Provider::codex, 5)}, Calendar::utc());
    EXPECT_EQ(chartOf(card).data().series.at(0).values.size(), 0U);
    EXPECT_EQ(chartOf(card).data().series.at(1).values.size(), 30U);
}

TEST(TrendCard, newStatesAreDrawn)
{
    TrendCard card;
    card.resize(396, card.sizeHint().height());
    card.setStates({evenState(Provider::claude, 0)}, Calendar::utc());
    card.setStates({dailyState(Provider::claude, [](int daysAgo) { return daysAgo == 0 ? 9 : 0; })}, Calendar::utc());
    EXPECT_EQ(chartOf(card).data().series.at(0).values.back().tokens, 9);
}

TEST(TrendCard, chartIsNamedAfterTheCard)
{
    installAccessibleElements();
    TrendCard card;
    card.setStates({evenState(Provider::claude, 1)}, Calendar::utc());
    EXPECT_EQ(accessibleName(chartOf(card)), QStringLiteral("30D Trend"));
    EXPECT_EQ(accessibleRole(chartOf(card)), QAccessible::Chart);
}

} // namespace
} // namespace tallyfox::test
