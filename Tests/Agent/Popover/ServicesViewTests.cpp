#include "Agent/Popover/ProviderStates.h"
#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/PushButton.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Popover/ServicesView.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace tallyfox::test {
namespace {

struct RowLabels {
    const TextLabel* name;
    const TextLabel* detail;
    const TextLabel* status;
};

RowLabels labelsOf(const QWidget& row)
{
    const auto labels = row.findChildren<TextLabel*>();
    EXPECT_EQ(labels.size(), 3);
    return {labels.at(0), labels.at(1), labels.at(2)};
}

/// One card for each service, from top to bottom.
std::vector<Card*> rowsOf(const QWidget& view)
{
    const auto found = view.findChildren<Card*>();
    std::vector<Card*> rows{found.begin(), found.end()};
    std::sort(rows.begin(), rows.end(), [](auto* one, auto* other) { return one->y() < other->y(); });
    return rows;
}

std::vector<std::string> namesOf(ServicesView& view)
{
    view.resize(Theme::popoverWidth, view.sizeHint().height());
    view.show();
    std::vector<std::string> names;
    for (const Card* row : rowsOf(view))
        names.push_back(labelsOf(*row).name->text().toStdString());
    return names;
}

bool hasText(const QWidget& view, const QString& text)
{
    const auto labels = view.findChildren<TextLabel*>();
    return std::any_of(labels.begin(), labels.end(), [&](const TextLabel* label) { return label->text() == text; });
}

PushButton& button(const QWidget& view, const QString& text)
{
    const auto buttons = view.findChildren<PushButton*>();
    const auto found = std::find_if(buttons.begin(), buttons.end(), [&](auto* each) { return each->text() == text; });
    EXPECT_NE(found, buttons.end());
    return **found;
}

PushButton& accessButton(const QWidget& view)
{
    return button(view, QStringLiteral("Allow Home Folder Access"));
}

UsageSnapshot bothProviders(SourceHealth claude, SourceHealth codex)
{
    UsageSnapshot snapshot = dailySnapshotOf({evenState(Provider::claude, 1), evenState(Provider::codex, 1)});
    snapshot.states[0].health = claude;
    snapshot.states[1].health = codex;
    return snapshot;
}

TEST(ServicesView, stagedServicesAreAlwaysShown)
{
    ServicesView view;
    view.setUsage(dailySnapshotOf({}));
    EXPECT_THAT(namesOf(view), testing::ElementsAre("Gemini", "Windsurf"));
}

TEST(ServicesView, providersAreFirstInTheOrderOfTheStore)
{
    ServicesView view;
    view.setUsage(dailySnapshotOf({evenState(Provider::codex, 1), evenState(Provider::claude, 1)}));
    EXPECT_THAT(namesOf(view), testing::ElementsAre("Codex", "Claude", "Gemini", "Windsurf"));
}

TEST(ServicesView, publicationReusesTheRows)
{
    ServicesView view;
    view.setUsage(bothProviders(SourceHealth::connected, SourceHealth::stale));
    EXPECT_THAT(namesOf(view), testing::ElementsAre("Claude", "Codex", "Gemini", "Windsurf"));
    const auto rows = rowsOf(view);
    view.setUsage(bothProviders(SourceHealth::unavailable, SourceHealth::connected));
    EXPECT_EQ(rowsOf(view), rows);
    EXPECT_EQ(labelsOf(*rows[0]).status->text(), QStringLiteral("Unavailable"));
    view.setUsage(dailySnapshotOf({evenState(Provider::codex, 1)}));
    EXPECT_THAT(namesOf(view), testing::ElementsAre("Codex", "Gemini", "Windsurf"));
}

TEST(ServicesView, headerCountsConnectedProvidersOnly)
{
    ServicesView view;
    view.setUsage(bothProviders(SourceHealth::connected, SourceHealth::stale));
    EXPECT_TRUE(hasText(view, QStringLiteral("Manage AI Services")));
    EXPECT_TRUE(hasText(view, QStringLiteral("Connected Accounts (1)")));
    view.setUsage(bothProviders(SourceHealth::connected, SourceHealth::connected));
    EXPECT_TRUE(hasText(view, QStringLiteral("Connected Accounts (2)")));
    view.setUsage(bothProviders(SourceHealth::localOnly, SourceHealth::unavailable));
    EXPECT_TRUE(hasText(view, QStringLiteral("Connected Accounts (0)")));
}

TEST(ServicesView, syncRequestsARefresh)
{
    ServicesView view;
    int refreshes = 0;
    QObject::connect(&view, &TabView::refreshRequested, &view, [&] { ++refreshes; });
    view.setUsage(dailySnapshotOf({}));
    click(button(view, QStringLiteral("Sync Accounts")));
    EXPECT_EQ(refreshes, 1);
}

TEST(ServicesView, accessButtonIsVisibleOnlyWithoutAccess)
{
    ServicesView view;
    int requests = 0;
    QObject::connect(&view, &TabView::homeAccessRequested, &view, [&] { ++requests; });
    UsageSnapshot snapshot = dailySnapshotOf({});
    snapshot.hasHomeAccess = false;
    view.setUsage(snapshot);
    EXPECT_FALSE(accessButton(view).isHidden());
    click(accessButton(view));
    EXPECT_EQ(requests, 1);
    snapshot.hasHomeAccess = true;
    view.setUsage(snapshot);
    EXPECT_TRUE(accessButton(view).isHidden());
}

TEST(ServicesView, footerSaysWhereDataAreProcessed)
{
    EXPECT_TRUE(hasText(ServicesView{}, QStringLiteral("All data is processed on your Mac")));
}

TEST(ServicesView, noTextIsElidedAtTheWidthOfThePopover)
{
    ServicesView view;
    UsageSnapshot snapshot = bothProviders(SourceHealth::permissionRequired, SourceHealth::localOnly);
    snapshot.states[0].detail = "Home folder access required";
    view.setUsage(snapshot);
    view.resize(Theme::popoverWidth, view.sizeHint().height());
    view.show();
    for (const TextLabel* label : view.findChildren<TextLabel*>())
        EXPECT_FALSE(label->isElided()) << label->text().toStdString();
    EXPECT_GE(button(view, QStringLiteral("Sync Accounts")).width(),
              button(view, QStringLiteral("Sync Accounts")).sizeHint().width());
}

TEST(ServicesView, rowHasItsFontsAndColours)
{
    ServicesView view;
    const auto [name, detail, status] = labelsOf(*rowsOf(view).front());
    EXPECT_EQ(name->font().weight(), QFont::Medium);
    EXPECT_EQ(name->font().pixelSize(), Theme::body().pixelSize());
    EXPECT_EQ(detail->font(), Theme::caption());
    EXPECT_EQ(detail->color(), Theme::muted());
    EXPECT_EQ(status->font(), Theme::caption2());
    EXPECT_EQ(status->color(), Theme::muted());
}

TEST(ServicesView, statusHasTheColourOfTheHealth)
{
    ServicesView view;
    view.setUsage(bothProviders(SourceHealth::connected, SourceHealth::unavailable));
    view.resize(Theme::popoverWidth, view.sizeHint().height());
    view.show();
    const auto rows = rowsOf(view);
    EXPECT_EQ(labelsOf(*rows[0]).status->text(), QStringLiteral("Connected"));
    EXPECT_EQ(labelsOf(*rows[0]).status->color(), Theme::success());
    view.setUsage(bothProviders(SourceHealth::unavailable, SourceHealth::unavailable));
    EXPECT_EQ(labelsOf(*rows[0]).status->color(), Theme::muted());
}

TEST(ServicesView, longDetailWrapsInsteadOfSqueezingTheStatus)
{
    ServicesView view;
    UsageSnapshot snapshot = dailySnapshotOf({evenState(Provider::claude, 1)});
    snapshot.states[0].detail = "short";
    view.setUsage(snapshot);
    view.resize(Theme::popoverWidth, view.sizeHint().height());
    view.show();
    Card& row = *rowsOf(view).front();
    const int height = row.height();
    snapshot.states[0].detail = "A sentence of a language that needs half as many words again as English does for it";
    view.setUsage(snapshot);
    view.resize(Theme::popoverWidth, 2 * view.height());
    settle();
    EXPECT_GT(row.height(), height);
    EXPECT_FALSE(labelsOf(row).status->isElided());
}

} // namespace
} // namespace tallyfox::test
