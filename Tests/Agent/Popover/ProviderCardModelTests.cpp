#include "Agent/Popover/ProviderStates.h"
#include "Tallyfox/Agent/Popover/ProviderCardModel.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

ProviderCardModel modelOf(const ProviderState& state)
{
    return providerCardModel(state, now, QLocale{QLocale::English, QLocale::UnitedStates});
}

using Metrics = std::vector<std::pair<std::string, std::string>>;

Metrics metricsOf(const ProviderState& state)
{
    Metrics metrics;
    for (const auto& [title, value] : modelOf(state).metrics)
        metrics.emplace_back(title.toStdString(), value.toStdString());
    return metrics;
}

std::string figureAt(double usedPercent)
{
    return modelOf(codexState(usedPercent)).figure.toStdString();
}

TEST(ProviderCardModel, providersHaveTheirTitlesAndSubtitles)
{
    const ProviderCardModel claude = modelOf(claudeState());
    EXPECT_EQ(claude.title, QStringLiteral("Claude"));
    EXPECT_EQ(claude.subtitle, QStringLiteral("Claude Code"));
    const ProviderCardModel codex = modelOf(codexState());
    EXPECT_EQ(codex.title, QStringLiteral("Codex"));
    EXPECT_EQ(codex.subtitle, QStringLiteral("ChatGPT"));
}

TEST(ProviderCardModel, healthIsTheFirstBadge)
{
    const std::vector<std::tuple<SourceHealth, QString, QColor>> badges{
        {SourceHealth::connected, QStringLiteral("Connected"), Theme::success()},
        {SourceHealth::localOnly, QStringLiteral("Local history"), Theme::claude()},
        {SourceHealth::stale, QStringLiteral("Stale"), Theme::claude()},
        {SourceHealth::permissionRequired, QStringLiteral("Permission"), Theme::warning()},
        {SourceHealth::unavailable, QStringLiteral("Unavailable"), Theme::muted()},
    };
    for (const auto& [health, text, color] : badges) {
        const ProviderCardModel model = modelOf(providerState(Provider::claude, health, ""));
        EXPECT_EQ(model.health, (ProviderCardModel::Badge{text, color})) << qPrintable(text);
    }
}

TEST(ProviderCardModel, confidenceOfTheQuotaIsTheSecondBadge)
{
    const std::vector<std::tuple<MeasurementConfidence, QString, QColor>> badges{
        {MeasurementConfidence::exact, QStringLiteral("Exact"), Theme::success()},
        {MeasurementConfidence::observed, QStringLiteral("Observed"), Theme::accent()},
        {MeasurementConfidence::estimated, QStringLiteral("Estimated"), Theme::muted()},
        {MeasurementConfidence::unknown, QStringLiteral("Unknown"), Theme::muted()},
    };
    for (const auto& [confidence, text, color] : badges) {
        ProviderState state = codexState();
        state.quota->confidence = confidence;
        EXPECT_EQ(modelOf(state).confidence, (ProviderCardModel::Badge{text, color})) << qPrintable(text);
    }
}

TEST(ProviderCardModel, withoutQuotaTokensAreObservedAndNoneAreUnknown)
{
    EXPECT_EQ(modelOf(claudeState(1)).confidence,
              (ProviderCardModel::Badge{QStringLiteral("Observed"), Theme::accent()}));
    EXPECT_EQ(modelOf(claudeState(0)).confidence,
              (ProviderCardModel::Badge{QStringLiteral("Unknown"), Theme::muted()}));
    EXPECT_EQ(displayConfidence(claudeState(-1)), MeasurementConfidence::unknown);
}

TEST(ProviderCardModel, percentagesAreRoundedHalvesAwayFromZeroAndNotClamped)
{
    EXPECT_EQ(figureAt(42.4), "42%");
    EXPECT_EQ(figureAt(42.5), "43%");
    EXPECT_EQ(figureAt(43.5), "44%");
    EXPECT_EQ(figureAt(104.6), "105%");
    EXPECT_EQ(figureAt(-0.4), "0%");
    EXPECT_EQ(figureAt(-0.5), "-1%");
    EXPECT_EQ(figureAt(1e15), "1000000000000000%");
}

TEST(ProviderCardModel, quotaIsShownWithPercentageAndReset)
{
    const ProviderCardModel model = modelOf(codexState());
    EXPECT_EQ(model.figureCaption, QStringLiteral("used"));
    EXPECT_EQ(model.note, QStringLiteral("Resets in 2 hr."));
    ASSERT_TRUE(model.quota);
    EXPECT_EQ(model.quota->usedPercent, 42.4);
    EXPECT_EQ(model.quota->accessibleName, QStringLiteral("Codex usage"));
    EXPECT_FALSE(model.quota->weekly);
    EXPECT_EQ(metricsOf(codexState()),
              (Metrics{{"30D Tokens", "45.6K"}, {"Today", "45.6K"}, {"Source", "Official usage API"}}));
}

TEST(ProviderCardModel, missingResetTimeIsReported)
{
    ProviderState state = codexState(42.5);
    state.quota->primary.resetsAt.reset();
    EXPECT_EQ(modelOf(state).figure, QStringLiteral("43%"));
    EXPECT_EQ(modelOf(state).note, QStringLiteral("Reset not reported"));
}

TEST(ProviderCardModel, pastResetIsShownAsPast)
{
    ProviderState state = codexState();
    state.quota->primary.resetsAt = now - std::chrono::hours{49};
    EXPECT_EQ(modelOf(state).note, QStringLiteral("Resets 2 days ago"));
}

TEST(ProviderCardModel, secondWindowHasALineOfItsOwn)
{
    const auto weekly = modelOf(codexStateWithWeekly()).quota->weekly;
    ASSERT_TRUE(weekly);
    EXPECT_EQ(weekly->used, QStringLiteral("Weekly 64% used"));
    EXPECT_EQ(weekly->reset, QStringLiteral("Resets in 3 days"));
}

TEST(ProviderCardModel, secondWindowWithoutResetTimeOmitsIt)
{
    ProviderState state = codexStateWithWeekly();
    state.quota->secondary->resetsAt.reset();
    EXPECT_EQ(modelOf(state).quota->weekly->reset, QString{});
}

TEST(ProviderCardModel, withoutQuotaTokensAreShown)
{
    const ProviderCardModel model = modelOf(claudeState());
    EXPECT_EQ(model.figure, QStringLiteral("1.3M"));
    EXPECT_EQ(model.figureCaption, QStringLiteral("tokens / 30D"));
    EXPECT_EQ(model.note, QStringLiteral("Observed from local history"));
    EXPECT_FALSE(model.quota);
    EXPECT_EQ(metricsOf(claudeState()),
              (Metrics{{"Today", "1.3M"}, {"History", "Local metadata"}, {"Confidence", "Observed"}}));
}

TEST(ProviderCardModel, partialHistoryIsShownAsPartial)
{
    ProviderState state = claudeState();
    state.isPartialHistory = true;
    EXPECT_EQ(metricsOf(state).at(1), (std::pair<std::string, std::string>{"History", "Partial local scan"}));
}

TEST(ProviderCardModel, withoutPermissionNoFigureIsShown)
{
    ProviderState state = claudeState();
    state.health = SourceHealth::permissionRequired;
    state.isPartialHistory = true;
    EXPECT_EQ(modelOf(state).figure, QStringLiteral(u"—"));
    EXPECT_EQ(metricsOf(state).at(1), (std::pair<std::string, std::string>{"History", "Not enabled"}));
}

TEST(ProviderCardModel, numbersAndTimesFollowTheLocale)
{
    const QLocale german{QLocale::German, QLocale::Germany};
    EXPECT_EQ(providerCardModel(codexState(), now, german).note, QStringLiteral("Resets in 2 Std."));
    EXPECT_EQ(providerCardModel(claudeState(-5'000), now, german).figure, QStringLiteral("-5.000"));
}

} // namespace
} // namespace tallyfox::test
