#include "Agent/Popover/ProviderStates.h"
#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Controls/Metric.h"
#include "Tallyfox/Agent/Controls/ProgressIndicators.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Popover/ProviderCard.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

/// A card as wide as in the overview.
class ShownCard {
public:
    explicit ShownCard(const ProviderState& state)
        : card(state.provider)
    {
        card.setFixedWidth(396);
        show(state);
    }

    void show(const ProviderState& state)
    {
        card.setModel(providerCardModel(state, now, QLocale{}));
        card.setFixedHeight(card.heightForWidth(396));
        card.show();
        settle();
    }

    /// All visible texts, in the order in which the widgets were created.
    [[nodiscard]] QStringList texts() const
    {
        QStringList result;
        for (const TextLabel* label : card.findChildren<TextLabel*>()) {
            if (label->isVisible())
                result << label->text();
        }
        return result;
    }

    [[nodiscard]] TextLabel* label(const QString& text) const
    {
        for (TextLabel* each : card.findChildren<TextLabel*>()) {
            if (each->isVisible() && each->text() == text)
                return each;
        }
        throw std::out_of_range{"no such text: " + text.toStdString()};
    }

    [[nodiscard]] UsageBar& bar() const
    {
        return *card.findChild<UsageBar*>();
    }

    ProviderCard card;
};

TEST(ProviderCard, quotaCardShowsEveryTextOfItsModel)
{
    const ShownCard shown{codexStateWithWeekly()};
    const QStringList texts = shown.texts();
    for (const char* text :
         {"Codex", "ChatGPT", "Connected", "Exact", "42%", "used", "Resets in 2 hr.", "Weekly 64% used",
          "Resets in 3 days", "30D Tokens", "Today", "45.6K", "Source", "Official usage API"})
        EXPECT_TRUE(texts.contains(QLatin1String{text})) << text;
    EXPECT_EQ(texts.size(), 15); // the tokens twice
}

TEST(ProviderCard, localCardShowsEveryTextOfItsModel)
{
    const ShownCard shown{claudeState()};
    const QStringList texts = shown.texts();
    for (const char* text : {"Claude", "Claude Code", "Local history", "Observed", "1.3M", "tokens / 30D",
                             "Observed from local history", "Today", "History", "Local metadata", "Confidence"})
        EXPECT_TRUE(texts.contains(QLatin1String{text})) << text;
    EXPECT_EQ(texts.size(), 13); // tokens and confidence twice
    EXPECT_FALSE(shown.bar().isVisible());
}

TEST(ProviderCard, barIsTintedFilledAndNamed)
{
    const ShownCard shown{codexState(42.4)};
    EXPECT_TRUE(shown.bar().isVisible());
    EXPECT_EQ(accessibleName(shown.bar()), QStringLiteral("Codex usage"));
    EXPECT_EQ(accessibleValue(shown.bar()), QStringLiteral("42"));
    const int filled = static_cast<int>(shown.bar().width() * 0.424);
    EXPECT_EQ(pixelOf(shown.bar(), {filled - 3, 3}), Theme::codex().rgb());
    EXPECT_EQ(pixelOf(shown.bar(), {filled + 3, 3}), Theme::surfaceStrong().rgb());
}

TEST(ProviderCard, figureIsLargeAndSemibold)
{
    const ShownCard shown{codexState()};
    const QFont font = shown.label(QStringLiteral("42%"))->font();
    EXPECT_EQ(font.pixelSize(), 28);
    EXPECT_EQ(font.weight(), QFont::DemiBold);
}

TEST(ProviderCard, captionsAreInTheSecondaryColour)
{
    const ShownCard shown{codexStateWithWeekly()};
    for (const char* text : {"used", "Resets in 2 hr.", "Weekly 64% used", "Resets in 3 days", "Today"}) {
        const TextLabel* label = shown.label(QLatin1String{text});
        EXPECT_EQ(label->color(), Theme::muted()) << text;
        EXPECT_EQ(label->font().pixelSize(), Theme::caption().pixelSize()) << text;
    }
}

TEST(ProviderCard, badgesAreInTheirColours)
{
    const ShownCard shown{claudeState()};
    EXPECT_EQ(shown.label(QStringLiteral("Local history"))->color(), Theme::claude());
    const QList<Badge*> badges = shown.card.findChildren<Badge*>();
    ASSERT_EQ(badges.size(), 2);
    EXPECT_EQ(badges.at(1)->text(), QStringLiteral("Observed"));
    EXPECT_EQ(badges.at(1)->color(), Theme::accent());
    EXPECT_LT(badges.at(0)->x(), badges.at(1)->x());
}

TEST(ProviderCard, borderAndTileHaveTheirGeometryAndColours)
{
    ShownCard shown{claudeState()};
    EXPECT_EQ(pixelOf(shown.card, {200, 6}), Theme::surface().rgb());
    EXPECT_TRUE(isNear(pixelOf(shown.card, {200, 0}), over(Theme::canvas(), Theme::line(), 0.9)));
    const IconTile* tile = shown.card.findChild<IconTile*>();
    EXPECT_EQ(tile->x(), 13);
    const QPoint insideTile = tile->pos() + QPoint{14, 2};
    EXPECT_TRUE(isNear(pixelOf(shown.card, insideTile), over(Theme::surface(), Theme::claude(), 0.12)));
}

TEST(ProviderCard, quotaIsShownAndHiddenInPlace)
{
    ProviderState codex = codexStateWithWeekly();
    ShownCard shown{codex};
    const int highest = shown.card.height();
    const QList<TextLabel*> labels = shown.card.findChildren<TextLabel*>();
    codex.quota->secondary.reset();
    shown.show(codex);
    EXPECT_LT(shown.card.height(), highest);
    EXPECT_FALSE(shown.texts().contains(QStringLiteral("Weekly 64% used")));
    codex.quota.reset();
    shown.show(codex);
    EXPECT_FALSE(shown.bar().isVisible());
    EXPECT_TRUE(shown.texts().contains(QStringLiteral("tokens / 30D")));
    shown.show(codexStateWithWeekly());
    EXPECT_EQ(shown.card.height(), highest);
    EXPECT_EQ(shown.card.findChildren<TextLabel*>(), labels) << "the widgets were created again";
}

TEST(ProviderCard, longestTextsStayInsideTheCard)
{
    ProviderState claude = claudeState(999'999'999'999);
    claude.detail = std::string(300, 'w');
    ProviderState codex = codexStateWithWeekly();
    codex.detail = std::string(300, 'w');
    codex.summary = claude.summary;
    for (const ProviderState& state : {claude, codex, claudeState(std::numeric_limits<std::int64_t>::max())}) {
        const ShownCard shown{state};
        EXPECT_LE(shown.card.minimumSizeHint().width(), 396);
        for (const TextLabel* label : shown.card.findChildren<TextLabel*>()) {
            if (!label->isVisible())
                continue;
            const QRect frame{label->mapTo(&shown.card, QPoint{}), label->size()};
            EXPECT_TRUE(shown.card.rect().adjusted(13, 13, -13, -13).contains(frame)) << qPrintable(label->text());
            EXPECT_GE(label->height(), QFontMetrics{label->font()}.height()) << qPrintable(label->text());
        }
    }
}

TEST(ProviderCard, twelveDigitsAreNotElided)
{
    const ShownCard shown{claudeState(999'999'999'999)};
    EXPECT_FALSE(shown.label(QStringLiteral("1000000.0M"))->isElided());
    EXPECT_FALSE(shown.label(QStringLiteral("tokens / 30D"))->isElided());
    EXPECT_FALSE(shown.label(QStringLiteral("Observed from local history"))->isElided()) << "two lines are enough";
}

TEST(ProviderCard, exposesProviderAndTitleOfEachMetric)
{
    ShownCard shown{claudeState()};
    EXPECT_EQ(accessibleName(shown.card), QStringLiteral("Claude"));
    TextLabel* value = shown.label(QStringLiteral("Local metadata"));
    EXPECT_EQ(accessibleName(*value), QStringLiteral("Local metadata"));
    EXPECT_EQ(accessibleDescription(*value), QStringLiteral("History"));
}

} // namespace
} // namespace tallyfox::test
