#include "Agent/Popover/ProviderStates.h"
#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Controls/PushButton.h"
#include "Tallyfox/Agent/Controls/SegmentedPicker.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Popover/RankingView.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <gmock/gmock.h>

#include <limits>

namespace tallyfox::test {
namespace {

std::vector<std::string> textsOf(const QWidget& view)
{
    std::vector<std::string> texts;
    for (const TextLabel* label : view.findChildren<TextLabel*>())
        texts.push_back(label->text().toStdString());
    return texts;
}

const TextLabel* labelOf(const QWidget& view, const QString& text)
{
    for (const TextLabel* label : view.findChildren<TextLabel*>()) {
        if (label->text() == text)
            return label;
    }
    return nullptr;
}

UsageSnapshot bothProviders()
{
    return dailySnapshotOf({evenState(Provider::claude, 100'000), evenState(Provider::codex, 10)});
}

TEST(RankingView, startsWithTheSumOfAllProviders)
{
    RankingView view;
    view.setUsage(bothProviders());
    EXPECT_EQ(view.findChild<SegmentedPicker*>()->currentIndex(), 0);
    EXPECT_EQ(accessibleName(*view.findChild<SegmentedPicker*>()), QStringLiteral("Board"));
    EXPECT_THAT(
        textsOf(view),
        testing::UnorderedElementsAre("No ranking yet", "Monthly total", "3.0M", "Ranking server is not connected"));
}

TEST(RankingView, eachBoardShowsItsOwnTotal)
{
    RankingView view;
    view.setUsage(bothProviders());
    const char* const totals[]{"3.0M", "3.0M", "300", "0"};
    for (int board = 0; board < 4; ++board) {
        view.findChild<SegmentedPicker*>()->setCurrentIndex(board);
        EXPECT_NE(labelOf(view, QString::fromUtf8(totals[board])), nullptr) << board;
    }
}

TEST(RankingView, publicationUpdatesTheTotalOfTheSelectedBoard)
{
    RankingView view;
    view.setUsage(bothProviders());
    view.findChild<SegmentedPicker*>()->setCurrentIndex(2);
    view.setUsage(dailySnapshotOf({evenState(Provider::codex, 20)}));
    EXPECT_NE(labelOf(view, QStringLiteral("600")), nullptr);
    view.setUsage(dailySnapshotOf({evenState(Provider::claude, 20)}));
    EXPECT_NE(labelOf(view, QStringLiteral("0")), nullptr);
}

TEST(RankingView, panelHasItsFontsAndColours)
{
    RankingView view;
    view.setUsage(bothProviders());
    EXPECT_EQ(labelOf(view, QStringLiteral("No ranking yet"))->font(), Theme::title3());
    EXPECT_EQ(labelOf(view, QStringLiteral("Monthly total"))->font(), Theme::caption());
    EXPECT_EQ(labelOf(view, QStringLiteral("Monthly total"))->color(), Theme::muted());
    EXPECT_EQ(labelOf(view, QStringLiteral("3.0M"))->font().pixelSize(), 30);
    EXPECT_EQ(labelOf(view, QStringLiteral("Ranking server is not connected"))->color(), Theme::muted());
}

TEST(RankingView, trophyIsInAFilledCircle)
{
    RankingView view;
    auto* disc = view.findChild<IconTile*>();
    EXPECT_EQ(disc->size(), (QSize{76, 76}));
    EXPECT_EQ(pixelOf(*disc, {38, 8}), Theme::surfaceStrong().rgb());
    EXPECT_EQ(pixelOf(*disc, {38, 30}), Theme::warning().rgb());
}

TEST(RankingView, howItWorksDoesNothingAndSubmitIsDisabled)
{
    RankingView view;
    view.setUsage(bothProviders());
    int asked = 0;
    for (const auto signal : {&TabView::refreshRequested, &TabView::homeAccessRequested, &TabView::dashboardRequested})
        QObject::connect(&view, signal, &view, [&asked] { ++asked; });
    const auto texts = textsOf(view);
    const auto buttons = view.findChildren<PushButton*>();
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(buttons[0]->text(), QStringLiteral("How it works"));
    EXPECT_TRUE(buttons[0]->isEnabled());
    EXPECT_EQ(buttons[1]->text(), QStringLiteral("Submit My Ranking"));
    EXPECT_FALSE(buttons[1]->isEnabled());
    for (PushButton* button : buttons)
        click(*button);
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(textsOf(view), texts);
}

TEST(Boards, areInTheOrderOfThePicker)
{
    EXPECT_THAT(RankingModel::boards(), testing::ElementsAre("Overall", "Claude", "Codex", "Gemini"));
}

TEST(MonthlyTotal, overallIncludesAllProviders)
{
    const std::vector states{evenState(Provider::claude, 10), evenState(Provider::codex, 1)};
    EXPECT_EQ(RankingModel::monthlyTotal(states, "Overall"), 330);
    EXPECT_EQ(RankingModel::monthlyTotal(states, "Claude"), 300);
    EXPECT_EQ(RankingModel::monthlyTotal(states, "Codex"), 30);
}

TEST(MonthlyTotal, boardWithoutItsProviderIsZero)
{
    const std::vector states{evenState(Provider::claude, 10)};
    EXPECT_EQ(RankingModel::monthlyTotal(states, "Codex"), 0);
    EXPECT_EQ(RankingModel::monthlyTotal(states, "Gemini"), 0);
    EXPECT_EQ(RankingModel::monthlyTotal(states, "claude"), 0);
    EXPECT_EQ(RankingModel::monthlyTotal({}, "Overall"), 0);
}

TEST(MonthlyTotal, moreThanSixtyFourBitsStopTheProgram)
{
    std::vector<ProviderState> states(2);
    states[0].summary.totalTokens = std::numeric_limits<std::int64_t>::max();
    states[1].summary.totalTokens = 1;
    EXPECT_EXIT(RankingModel::monthlyTotal(states, "Overall"), testing::ExitedWithCode(1), "64 bits");
}

} // namespace
} // namespace tallyfox::test
