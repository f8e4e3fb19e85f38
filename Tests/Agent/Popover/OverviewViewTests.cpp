#include "Agent/Popover/ProviderStates.h"
#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Charts/LineChart.h"
#include "Tallyfox/Agent/Controls/ProgressIndicators.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Controls/ToolButton.h"
#include "Tallyfox/Agent/Popover/OverviewView.h"
#include "Tallyfox/Agent/Popover/ProviderCard.h"
#include "Tallyfox/Agent/Popover/RefreshFooter.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

class OverviewViewTest : public testing::Test {
protected:
    OverviewViewTest()
    {
        QObject::connect(&view, &TabView::homeAccessRequested, [this] { requests.emplace_back("home access"); });
        QObject::connect(&view, &TabView::dashboardRequested, [this] { requests.emplace_back("dashboard"); });
        QObject::connect(&view, &TabView::refreshRequested, [this] { requests.emplace_back("refresh"); });
    }

    void show(const UsageSnapshot& snapshot)
    {
        view.setUsage(snapshot);
        view.resize(420, 600);
        showActive(view);
        settle();
    }

    [[nodiscard]] bool shows(const char* text) const
    {
        const QList<TextLabel*> labels = view.findChildren<TextLabel*>();
        return std::any_of(labels.begin(), labels.end(), [text](const TextLabel* label) {
            return label->isVisible() && label->text() == QLatin1String{text};
        });
    }

    template <typename Part> [[nodiscard]] Part& part() const
    {
        return *view.findChild<Part*>();
    }

    [[nodiscard]] CardButton& invitation() const
    {
        const QList<CardButton*> buttons = view.findChildren<CardButton*>();
        return **std::find_if(buttons.begin(), buttons.end(), [](CardButton* button) {
            return accessibleName(*button) == QStringLiteral("Enable 30-day usage");
        });
    }

    [[nodiscard]] CardButton& trendButton() const
    {
        return *qobject_cast<CardButton*>(part<TrendCard>().parentWidget());
    }

    [[nodiscard]] ToolButton& refreshButton() const
    {
        return *part<RefreshFooter>().findChild<ToolButton*>();
    }

    OverviewView view;
    std::vector<std::string> requests;
};

UsageSnapshot nothingYet()
{
    return {.hasHomeAccess = false, .now = now};
}

TEST_F(OverviewViewTest, withoutAccessItShowsTheInvitationAndAnEmptyTrend)
{
    show(nothingYet());
    EXPECT_TRUE(invitation().isVisible());
    EXPECT_TRUE(part<TrendCard>().isVisible());
    EXPECT_EQ(view.findChild<ProviderCard*>(), nullptr);
    EXPECT_TRUE(shows("Not updated"));
    EXPECT_TRUE(shows("Local processing"));
}

TEST_F(OverviewViewTest, invitationExplainsItself)
{
    show(nothingYet());
    EXPECT_TRUE(shows("Enable 30-day usage"));
    EXPECT_TRUE(shows("Allow read-only access to Claude and Codex usage metadata"));
    EXPECT_TRUE(shows("Allow Access"));
    EXPECT_EQ(accessibleDescription(invitation()), QStringLiteral("Opens a folder picker for your home folder"));
}

TEST_F(OverviewViewTest, invitationRequestsHomeAccess)
{
    show(nothingYet());
    click(invitation());
    EXPECT_EQ(requests, std::vector<std::string>{"home access"});
}

TEST_F(OverviewViewTest, grantedAccessHidesTheInvitation)
{
    show(nothingYet());
    show(snapshotOf({}));
    EXPECT_FALSE(invitation().isVisible());
}

TEST_F(OverviewViewTest, eachStateHasACardInTheOrderOfTheStore)
{
    show(snapshotOf({claudeState(), codexState()}));
    const QList<ProviderCard*> cards = view.findChildren<ProviderCard*>();
    ASSERT_EQ(cards.size(), 2);
    EXPECT_EQ(cards.at(0)->provider(), Provider::claude);
    EXPECT_EQ(cards.at(1)->provider(), Provider::codex);
    EXPECT_LT(cards.at(0)->geometry().bottom(), cards.at(1)->y());
    EXPECT_LT(cards.at(1)->geometry().bottom(), trendButton().y());
    EXPECT_LT(trendButton().geometry().bottom(), part<RefreshFooter>().y());
}

TEST_F(OverviewViewTest, timesAreThoseOfThePublication)
{
    show(snapshotOf({codexState()}));
    EXPECT_TRUE(shows("Refreshed 2:05 PM"));
    EXPECT_TRUE(shows("Resets in 2 hr."));
    UsageSnapshot snapshot = snapshotOf({codexState()});
    snapshot.lastUpdated.reset();
    snapshot.now = now - std::chrono::hours{22};
    show(snapshot);
    EXPECT_TRUE(shows("Not updated"));
    EXPECT_TRUE(shows("Resets in 1 day"));
}

TEST_F(OverviewViewTest, publicationReusesTheCards)
{
    show(snapshotOf({claudeState(), codexState()}));
    const QList<ProviderCard*> before = view.findChildren<ProviderCard*>();
    show(snapshotOf({claudeState(), codexState(77)}));
    EXPECT_TRUE(shows("77%"));
    EXPECT_FALSE(shows("42%"));
    EXPECT_EQ(view.findChildren<ProviderCard*>(), before);
}

TEST_F(OverviewViewTest, cardsFollowTheListOfStates)
{
    show(snapshotOf({claudeState(), codexState()}));
    show(snapshotOf({codexState()}));
    const QList<ProviderCard*> cards = view.findChildren<ProviderCard*>();
    ASSERT_EQ(cards.size(), 1);
    EXPECT_EQ(cards.front()->provider(), Provider::codex);
    EXPECT_TRUE(cards.front()->isVisible());
}

TEST_F(OverviewViewTest, contentHasTwelvePixelsOfPadding)
{
    show(snapshotOf({claudeState()}));
    EXPECT_EQ(part<ProviderCard>().geometry().topLeft(), QPoint(12, 12));
    EXPECT_EQ(part<ProviderCard>().width(), 396);
}

TEST_F(OverviewViewTest, trendOpensTheDashboardByPointerAndKeyboard)
{
    show(snapshotOf({claudeState()}));
    EXPECT_EQ(accessibleName(trendButton()), QStringLiteral("Open Token Dashboard"));
    click(trendButton());
    pressKey(trendButton(), Qt::Key_Return);
    EXPECT_EQ(requests, (std::vector<std::string>{"dashboard", "dashboard"}));
}

TEST_F(OverviewViewTest, refreshButtonRequestsARefresh)
{
    show(snapshotOf({}));
    EXPECT_EQ(accessibleName(refreshButton()), QStringLiteral("Refresh"));
    EXPECT_TRUE(showsSymbol(refreshButton(), Symbol::arrowClockwise));
    click(refreshButton());
    EXPECT_EQ(requests, std::vector<std::string>{"refresh"});
}

TEST_F(OverviewViewTest, indicatorReplacesTheButtonDuringARefresh)
{
    UsageSnapshot snapshot = snapshotOf({});
    snapshot.isRefreshing = true;
    show(snapshot);
    EXPECT_FALSE(refreshButton().isVisible());
    EXPECT_TRUE(part<ActivityIndicator>().isVisible());
    snapshot.isRefreshing = false;
    show(snapshot);
    EXPECT_TRUE(refreshButton().isVisible());
    EXPECT_FALSE(part<ActivityIndicator>().isVisible());
}

TEST_F(OverviewViewTest, focusOnTheRefreshButtonSurvivesTheRefresh)
{
    UsageSnapshot snapshot = snapshotOf({claudeState()});
    show(snapshot);
    refreshButton().setFocus();
    snapshot.isRefreshing = true;
    show(snapshot);
    EXPECT_TRUE(part<ActivityIndicator>().hasFocus());
    snapshot.isRefreshing = false;
    show(snapshot);
    EXPECT_TRUE(refreshButton().hasFocus());
}

TEST_F(OverviewViewTest, focusElsewhereIsKeptDuringARefresh)
{
    UsageSnapshot snapshot = snapshotOf({claudeState()});
    show(snapshot);
    trendButton().setFocus();
    snapshot.isRefreshing = true;
    show(snapshot);
    snapshot.isRefreshing = false;
    show(snapshot);
    EXPECT_TRUE(trendButton().hasFocus());
}

std::string status(const std::optional<Instant>& lastUpdated, const Calendar& calendar, QLocale::Language language)
{
    return refreshStatusText(lastUpdated, calendar, QLocale{language}).toStdString();
}

TEST(RefreshStatusText, timeFollowsZoneAndLocale)
{
    EXPECT_EQ(status(std::nullopt, Calendar::utc(), QLocale::English), "Not updated");
    EXPECT_EQ(status(now, Calendar::utc(), QLocale::German), "Refreshed 14:05");
    EXPECT_EQ(status(now, Calendar::utc(), QLocale::C), "Refreshed 14:05");
    EXPECT_EQ(status(now, Calendar::utc(), QLocale::English), "Refreshed 2:05 PM");
    EXPECT_EQ(status(now, zone("Asia/Tokyo"), QLocale::German), "Refreshed 23:05");
    EXPECT_EQ(status(now, zone("Pacific/Auckland"), QLocale::German), "Refreshed 03:05");
    EXPECT_EQ(status(distantPast, zone("America/New_York"), QLocale::German), "Refreshed 19:03");
}

LineChart& chartOf(TrendCard& card)
{
    return *card.findChild<LineChart*>();
}

TEST(TrendCard, headerHasTitleAndChevron)
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

TEST(TrendCard, chartFillsTheCardInsideThePadding)
{
    TrendCard card;
    card.resize(396, card.sizeHint().height());
    card.show();
    EXPECT_EQ(chartOf(card).geometry().left(), Theme::cardPadding);
    EXPECT_EQ(chartOf(card).size(), (QSize{370, 92}));
    EXPECT_EQ(chartOf(card).geometry().bottom() + 1, card.height() - Theme::cardPadding);
}

TEST(TrendCard, isACardWithABorder)
{
    TrendCard card;
    card.resize(396, card.sizeHint().height());
    EXPECT_EQ(pixelOf(card, {30, 8}), Theme::surface().rgb());
    EXPECT_TRUE(isNear(pixelOf(card, {200, 0}), over(Theme::surface(), Theme::line(), Theme::cardBorderOpacity))
                || isNear(pixelOf(card, {200, 0}), over(Theme::canvas(), Theme::line(), Theme::cardBorderOpacity)));
}

TEST(TrendCard, emptyChartKeepsItsHeight)
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

TEST(TrendCard, chartHasTheNameOfTheCard)
{
    installAccessibleElements();
    TrendCard card;
    card.setStates({evenState(Provider::claude, 1)}, Calendar::utc());
    EXPECT_EQ(accessibleName(chartOf(card)), QStringLiteral("30D Trend"));
    EXPECT_EQ(accessibleRole(chartOf(card)), QAccessible::Chart);
}

} // namespace
} // namespace tallyfox::test
