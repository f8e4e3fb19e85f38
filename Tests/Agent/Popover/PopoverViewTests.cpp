#include "Agent/Popover/ProviderStates.h"
#include "Support/Agent/Widgets.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/ProgressIndicators.h"
#include "Tallyfox/Agent/Controls/SegmentedPicker.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Controls/ToolButton.h"
#include "Tallyfox/Agent/Popover/DashboardView.h"
#include "Tallyfox/Agent/Popover/OverviewView.h"
#include "Tallyfox/Agent/Popover/PopoverView.h"
#include "Tallyfox/Agent/Popover/RankingView.h"
#include "Tallyfox/Agent/Popover/RefreshFooter.h"
#include "Tallyfox/Agent/Popover/ServicesView.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QPointer>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

class PopoverViewTest : public testing::Test {
protected:
    PopoverViewTest()
    {
        view.setUsage(snapshotOf({claudeState(), codexStateWithWeekly()}));
        showActive(view);
        settle();
    }

    template <typename Part> [[nodiscard]] Part* part() const
    {
        return view.findChild<Part*>();
    }

    [[nodiscard]] ToolButton& toolButton(const char* help) const
    {
        for (ToolButton* button : view.findChildren<ToolButton*>()) {
            if (button->toolTip() == QLatin1String{help})
                return *button;
        }
        throw std::out_of_range{help};
    }

    [[nodiscard]] CardButton& cardButton(const char* name) const
    {
        for (CardButton* button : view.findChildren<CardButton*>()) {
            if (accessibleName(*button) == QLatin1String{name})
                return *button;
        }
        throw std::out_of_range{name};
    }

    [[nodiscard]] CardButton& trendButton() const
    {
        return cardButton("Open Token Dashboard");
    }

    [[nodiscard]] QRadioButton& segment(PopoverTab tab) const
    {
        return *part<SegmentedPicker>()->findChildren<QRadioButton*>().at(static_cast<int>(tab));
    }

    void showMoreThanFits()
    {
        view.setUsage(snapshotOf(std::vector<ProviderState>(8, codexStateWithWeekly())));
        const QScrollBar& bar = *part<QScrollArea>()->verticalScrollBar();
        ASSERT_TRUE(spinUntil([&bar] { return bar.maximum() > 0; }));
    }

    PopoverView view{PopoverTab::overview};
};

TEST_F(PopoverViewTest, newPopoverShowsTheGivenTab)
{
    EXPECT_EQ(view.selectedTab(), PopoverTab::overview);
    EXPECT_NE(part<OverviewView>(), nullptr);
    const PopoverView other{PopoverTab::services};
    EXPECT_EQ(other.selectedTab(), PopoverTab::services);
    EXPECT_NE(other.findChild<ServicesView*>(), nullptr);
}

TEST_F(PopoverViewTest, pickerHasASegmentForEachTab)
{
    EXPECT_EQ(accessibleName(*part<SegmentedPicker>()), QStringLiteral("View"));
    QStringList labels;
    for (const QRadioButton* button : part<SegmentedPicker>()->findChildren<QRadioButton*>())
        labels << button->text();
    EXPECT_EQ(labels.join(QLatin1Char{' '}), QStringLiteral("Overview Dashboard Ranking Services"));
}

TEST_F(PopoverViewTest, selectedSegmentShowsOnlyItsTab)
{
    click(segment(PopoverTab::ranking));
    EXPECT_EQ(view.selectedTab(), PopoverTab::ranking);
    EXPECT_NE(part<RankingView>(), nullptr);
    EXPECT_EQ(part<OverviewView>(), nullptr);
    click(segment(PopoverTab::overview));
    EXPECT_NE(part<OverviewView>(), nullptr);
    EXPECT_EQ(part<RankingView>(), nullptr);
}

TEST_F(PopoverViewTest, tabSelectedAgainIsCreatedAgain)
{
    view.selectTab(PopoverTab::dashboard);
    auto* range = part<DashboardView>()->findChild<SegmentedPicker*>();
    const int atFirst = range->currentIndex();
    range->setCurrentIndex(0);
    ASSERT_NE(atFirst, 0);
    view.selectTab(PopoverTab::overview);
    view.selectTab(PopoverTab::dashboard);
    EXPECT_EQ(part<DashboardView>()->findChild<SegmentedPicker*>()->currentIndex(), atFirst);
}

TEST_F(PopoverViewTest, currentTabIsKeptWhenSelectedAgainOrHidden)
{
    const QPointer<OverviewView> before = part<OverviewView>();
    view.selectTab(PopoverTab::overview);
    EXPECT_EQ(part<OverviewView>(), before);
    view.selectTab(PopoverTab::ranking);
    const QPointer<RankingView> ranking = part<RankingView>();
    view.hide();
    view.show();
    EXPECT_EQ(view.selectedTab(), PopoverTab::ranking);
    EXPECT_EQ(part<RankingView>(), ranking);
}

TEST_F(PopoverViewTest, plusOpensTheServicesFromEveryTab)
{
    for (const PopoverTab tab : allPopoverTabs) {
        view.selectTab(tab);
        click(toolButton("Connect Services"));
        EXPECT_EQ(view.selectedTab(), PopoverTab::services);
        EXPECT_NE(part<ServicesView>(), nullptr);
    }
}

TEST_F(PopoverViewTest, trendSwitchesToTheDashboardByPointerAndKeyboard)
{
    click(trendButton());
    EXPECT_EQ(view.selectedTab(), PopoverTab::dashboard);
    EXPECT_TRUE(segment(PopoverTab::dashboard).isChecked());
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        view.selectTab(PopoverTab::overview);
        trendButton().setFocus();
        pressKey(trendButton(), key);
        EXPECT_EQ(view.selectedTab(), PopoverTab::dashboard);
        EXPECT_TRUE(segment(PopoverTab::dashboard).hasFocus()) << "the focus was lost with the old tab";
    }
}

TEST_F(PopoverViewTest, newTabShowsTheLatestSnapshot)
{
    view.selectTab(PopoverTab::services);
    UsageSnapshot snapshot = snapshotOf({claudeState(), codexState()});
    snapshot.isRefreshing = true;
    snapshot.hasHomeAccess = false;
    view.setUsage(snapshot);
    view.selectTab(PopoverTab::overview);
    EXPECT_TRUE(cardButton("Enable 30-day usage").isVisible());
    EXPECT_TRUE(part<ActivityIndicator>()->isVisible());
}

TEST_F(PopoverViewTest, requestsOfTabsAreForwarded)
{
    std::vector<std::string> requests;
    QObject::connect(&view, &PopoverView::refreshRequested, [&] { requests.emplace_back("refresh"); });
    QObject::connect(&view, &PopoverView::homeAccessRequested, [&] { requests.emplace_back("home access"); });
    QObject::connect(&view, &PopoverView::settingsRequested, [&] { requests.emplace_back("settings"); });
    QObject::connect(&view, &PopoverView::keepAwakeToggled, [&] { requests.emplace_back("keep awake"); });
    view.setUsage({.hasHomeAccess = false, .now = now});
    click(*part<RefreshFooter>()->findChild<ToolButton*>());
    click(cardButton("Enable 30-day usage"));
    click(toolButton("Settings"));
    click(toolButton("Keep Mac Awake"));
    EXPECT_EQ(requests, (std::vector<std::string>{"refresh", "home access", "settings", "keep awake"}));
}

TEST_F(PopoverViewTest, cupIsFullWhileTheComputerIsKeptAwake)
{
    ToolButton& cup = toolButton("Keep Mac Awake");
    EXPECT_TRUE(showsSymbol(cup, Symbol::cupHot));
    click(cup);
    EXPECT_TRUE(showsSymbol(cup, Symbol::cupHot)) << "a request alone changes nothing";
    view.setKeepsAwake(true);
    EXPECT_TRUE(showsSymbol(cup, Symbol::cupHotFill, Theme::accent()));
    EXPECT_TRUE(accessibleState(cup).checked);
    EXPECT_TRUE(shows(cup, Theme::accent()));
    view.setKeepsAwake(false);
    EXPECT_TRUE(showsSymbol(cup, Symbol::cupHot));
    EXPECT_FALSE(accessibleState(cup).checked);
}

TEST_F(PopoverViewTest, headerHasItsGeometryTextsAndColours)
{
    const QWidget& header = *toolButton("Settings").parentWidget();
    EXPECT_EQ(header.geometry(), QRect(0, 0, 420, 52));
    QStringList texts;
    for (const TextLabel* label : header.findChildren<TextLabel*>())
        texts << label->text();
    EXPECT_EQ(texts.join(QLatin1Char{','}), QStringLiteral("Tallyfox,Usage Overview"));
    EXPECT_EQ(pixelOf(view, {14 + 14, 12 + 2}), Theme::accent().rgb()) << "the tile is misplaced";
    EXPECT_EQ(toolButton("Connect Services").geometry().right(), 420 - 14 - 1);
    EXPECT_LT(toolButton("Keep Mac Awake").x(), toolButton("Settings").x());
    EXPECT_TRUE(showsSymbol(toolButton("Settings"), Symbol::gear));
    EXPECT_TRUE(showsSymbol(toolButton("Connect Services"), Symbol::plus));
    EXPECT_EQ(header.findChildren<QAbstractButton*>().size(), 3) << "there is no quit button";
}

TEST_F(PopoverViewTest, canvasAndDividersFillTheFrame)
{
    EXPECT_EQ(pixelOf(view, {3, 60}), Theme::canvas().rgb());
    EXPECT_EQ(pixelOf(view, {3, 675}), Theme::canvas().rgb());
    EXPECT_EQ(pixelOf(view, {200, 52}), Theme::line().rgb());
    const QRect picker = part<SegmentedPicker>()->geometry();
    EXPECT_EQ(picker.topLeft(), QPoint(12, 53 + 12));
    EXPECT_EQ(picker.width(), 396);
    EXPECT_EQ(pixelOf(view, {200, picker.bottom() + 12 + 1}), Theme::line().rgb());
}

TEST_F(PopoverViewTest, sizeIsFixedWhateverTheContent)
{
    ProviderState loud = codexStateWithWeekly();
    loud.detail = std::string(500, 'w');
    const std::vector<ProviderState> many(8, loud);
    for (const PopoverTab tab : allPopoverTabs) {
        view.selectTab(tab);
        for (const UsageSnapshot& snapshot : {UsageSnapshot{.now = now}, snapshotOf(many)}) {
            view.setUsage(snapshot);
            settle();
            EXPECT_EQ(view.size(), QSize(420, 680));
            EXPECT_EQ(view.sizeHint(), view.sizeHint().boundedTo({420, 680}));
            EXPECT_LE(part<TabView>()->minimumSizeHint().width(), 420) << rawValue(tab);
            EXPECT_EQ(part<TabView>()->width(), 420) << rawValue(tab);
        }
    }
}

TEST_F(PopoverViewTest, typicalContentNeedsNoScrolling)
{
    EXPECT_EQ(part<QScrollArea>()->verticalScrollBar()->maximum(), 0);
}

TEST_F(PopoverViewTest, pageKeysScrollFromAnywhere)
{
    showMoreThanFits();
    const QScrollBar& bar = *part<QScrollArea>()->verticalScrollBar();
    pressKey(segment(PopoverTab::overview), Qt::Key_PageDown);
    EXPECT_GT(bar.value(), 0);
    pressKey(segment(PopoverTab::overview), Qt::Key_PageUp);
    EXPECT_EQ(bar.value(), 0);
}

TEST_F(PopoverViewTest, newTabStartsAtTheTop)
{
    showMoreThanFits();
    part<QScrollArea>()->verticalScrollBar()->setValue(200);
    ASSERT_EQ(part<OverviewView>()->y(), -200);
    view.selectTab(PopoverTab::dashboard);
    view.selectTab(PopoverTab::overview);
    settle();
    EXPECT_EQ(part<OverviewView>()->y(), 0);
}

TEST_F(PopoverViewTest, focusGoesToTheSelectedSegment)
{
    view.selectTab(PopoverTab::ranking);
    view.setFocus();
    EXPECT_TRUE(segment(PopoverTab::ranking).hasFocus());
}

/// The tab stops, in order.
std::vector<QWidget*> tabStops(QWidget& window)
{
    std::vector<QWidget*> stops;
    for (QWidget* widget = window.nextInFocusChain(); widget != &window; widget = widget->nextInFocusChain()) {
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isVisible() && widget->isEnabled())
            stops.push_back(widget);
    }
    return stops;
}

TEST_F(PopoverViewTest, everyTabStopOfEveryTabHasANameAndARole)
{
    view.setUsage({.states = {claudeState(), codexStateWithWeekly()}, .hasHomeAccess = false, .now = now});
    for (const PopoverTab tab : allPopoverTabs) {
        view.selectTab(tab);
        settle();
        const std::vector<QWidget*> stops = tabStops(view);
        EXPECT_GE(stops.size(), 4U);
        for (QWidget* stop : stops) {
            EXPECT_FALSE(accessibleName(*stop).isEmpty()) << rawValue(tab) << ": " << stop->metaObject()->className();
            EXPECT_NE(accessibleRole(*stop), QAccessible::Client) << qPrintable(accessibleName(*stop));
        }
    }
}

TEST_F(PopoverViewTest, tabOrderFollowsTheLayout)
{
    view.setUsage({.states = {claudeState(), codexStateWithWeekly()}, .hasHomeAccess = false, .now = now});
    QStringList names;
    for (QWidget* stop : tabStops(view))
        names << accessibleName(*stop);
    EXPECT_EQ(names.join(QLatin1Char{','}),
              QStringLiteral("Keep Mac Awake,Settings,Connect Services,Overview,Enable 30-day usage,"
                             "Open Token Dashboard,Refresh"));
}

} // namespace
} // namespace tallyfox::test
