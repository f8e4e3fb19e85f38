#include "Agent/Translations/TranslatedApplication.h"
#include "Support/Moments.h"
#include "Tallyfox/Agent/Charts/HeatMap.h"
#include "Tallyfox/Agent/Popover/PopoverView.h"
#include "Tallyfox/Agent/Popover/ProviderCardModel.h"
#include "Tallyfox/Agent/Popover/RefreshFooter.h"
#include "Tallyfox/Agent/Settings/NotificationSettingsView.h"
#include "Tallyfox/Agent/Shell/StatusTexts.h"
#include "Tallyfox/Agent/StatusItem/StatusItem.h"
#include "Tallyfox/Agent/Theme/DateFormats.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Agent/Theme/Translations.h"
#include "Tallyfox/Engine/CommandLine/TokenText.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <set>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;

const Instant now = utcTime(2026, 11, 21, 14, 5);

QString tabName(PopoverTab tab)
{
    return QCoreApplication::translate("PopoverTab", rawValue(tab));
}

UsageSummary someHistory()
{
    UsageSample sample;
    sample.timestamp = now;
    sample.totalTokens = 1'000;
    return UsageSummary{{&sample, 1}, now, Calendar::utc()};
}

QuotaSnapshot someQuota()
{
    QuotaSnapshot quota;
    quota.primary.usedPercent = 42.5;
    quota.primary.resetsAt = now + 2h;
    quota.confidence = MeasurementConfidence::exact;
    return quota;
}

/// The texts of the states for all combinations of results of a refresh.
std::set<std::string> textsOfTheStore()
{
    const ProviderState first = initialState(Provider::codex, now, Calendar::utc());
    ProviderState withQuota = first;
    withQuota.quota = someQuota();
    std::set<std::string> texts{first.detail};
    for (unsigned found = 0; found < 64; ++found) {
        ProviderUpdate update;
        update.provider = Provider::codex;
        update.attemptedAt = now;
        if (found & 1U)
            update.summary = someHistory();
        update.isPartialHistory = found & 2U;
        update.historyPermissionRequired = found & 4U;
        if (found & 8U)
            update.quota = someQuota();
        update.quotaFailed = found & 16U;
        const ProviderState state = merge(update, found & 32U ? &withQuota : &first, now, Calendar::utc());
        texts.insert(state.detail);
        texts.emplace(rawValue(state.health));
    }
    return texts;
}

/// The title of the first tab, in the language of a locale.
QString firstTabName(const char* locale)
{
    const TranslatedApplication application{QLocale{QLatin1String{locale}}};
    return tabName(PopoverTab::overview);
}

TEST(InstallTranslations, languageOfTheLocaleIsInstalledForEveryTerritory)
{
    for (const char* name : {"de_DE", "de_AT", "de_CH", "de"})
        EXPECT_EQ(firstTabName(name), QStringLiteral(u"Übersicht")) << name;
    for (const char* name : {"fr_FR", "fr_CA", "fr_CH", "fr"})
        EXPECT_EQ(firstTabName(name), QStringLiteral(u"Aperçu")) << name;
    for (const char* name : {"es_ES", "es_MX", "es_AR", "es"})
        EXPECT_EQ(firstTabName(name), QStringLiteral("Resumen")) << name;
    EXPECT_EQ(tabName(PopoverTab::overview), QStringLiteral("Overview")) << "a translator is left behind";
}

TEST(InstallTranslations, englishIsTheFallback)
{
    for (const char* name : {"en_US", "en_GB", "C", "nl_NL", "ar_EG"})
        EXPECT_EQ(firstTabName(name), QStringLiteral("Overview")) << name;
}

TEST(TranslatedLanguage, firstAvailableLanguageWins)
{
    const auto chosen = [](const char* languages) {
        return translatedLanguage(QString::fromLatin1(languages).split(QLatin1Char{' '})).toStdString();
    };
    EXPECT_EQ(chosen("de de-Latn-DE de-DE"), "de");
    EXPECT_EQ(chosen("de-AT de en"), "de");
    EXPECT_EQ(chosen("es-419 es fr de"), "es");
    EXPECT_EQ(chosen("nl-NL nl fr-BE en"), "fr") << "Dutch is not available";
    EXPECT_EQ(chosen("en en-US de de-DE"), "") << "English comes first, though it has no file";
    EXPECT_EQ(chosen("nl en-GB de"), "");
    EXPECT_EQ(chosen("C de"), "");
    EXPECT_EQ(chosen("nl"), "");
    EXPECT_EQ(chosen(""), "");
}

TEST(InstallTranslations, dialogsOfQtAreTranslatedToo)
{
    const auto cancel = [] { return QCoreApplication::translate("QPlatformTheme", "Cancel"); };
    const auto lookIn = [] { return QCoreApplication::translate("QFileDialog", "Look in:"); };
    const QString english = cancel();
    EXPECT_EQ(english, QStringLiteral("Cancel"));
    forEachLanguage([&] { EXPECT_NE(cancel(), english); });
    const TranslatedApplication application{german()};
    EXPECT_EQ(cancel(), QStringLiteral("Abbrechen"));
    EXPECT_EQ(lookIn(), QStringLiteral("Suchen in:"));
}

TEST(TranslatedText, everyTextOfTheStoreIsTranslated)
{
    const std::set<std::string> texts = textsOfTheStore();
    EXPECT_EQ(texts.size(), 12U) << "five healths and seven details";
    forEachLanguage([&texts] {
        for (const std::string& text : texts)
            EXPECT_NE(translatedText(text), QString::fromStdString(text));
    });
}

TEST(TranslatedText, unknownTextIsUnchanged)
{
    const TranslatedApplication application{german()};
    EXPECT_EQ(translatedText("What nobody has written yet"), QStringLiteral("What nobody has written yet"));
}

ProviderCardModel cardWithTwoQuotas()
{
    ProviderState state = initialState(Provider::codex, now, Calendar::utc());
    state.quota = someQuota();
    state.quota->secondary = QuotaWindow{.usedPercent = 61, .resetsAt = now + 3 * 24h, .windowMinutes = 10'080};
    return providerCardModel(state, now, QLocale{});
}

/// Codex has been refreshed, Claude has not.
QStringList someMenuFigures()
{
    ProviderState state = initialState(Provider::codex, now, Calendar::utc());
    state.summary = someHistory();
    state.quota = someQuota();
    state.updatedAt = now;
    state.health = SourceHealth::connected;
    UsageSnapshot snapshot;
    snapshot.states = {initialState(Provider::claude, now, Calendar::utc()), state};
    snapshot.combinedPercent = 43;
    snapshot.now = now;
    return menuFigures(snapshot, QLocale{}, true);
}

TEST(GermanTexts, sentencesIncludeTheirFigures)
{
    const TranslatedApplication application{german()};
    const ProviderCardModel model = cardWithTwoQuotas();
    EXPECT_EQ(model.figure, QStringLiteral("43%")) << "the same in every language";
    EXPECT_EQ(model.note, QStringLiteral("Reset in 2 Std."));
    ASSERT_TRUE(model.quota && model.quota->weekly);
    EXPECT_EQ(model.quota->accessibleName, QStringLiteral("Codex-Nutzung"));
    EXPECT_EQ(model.quota->weekly->used, QStringLiteral("Woche: 61% genutzt"));
    EXPECT_EQ(model.quota->weekly->reset, QStringLiteral("Reset in 3 Tagen"));
    EXPECT_EQ(refreshStatusText(now, Calendar::utc(), QLocale{}), QStringLiteral("Aktualisiert um 14:05"));
    EXPECT_EQ(StatusItemContent{42}.fullText(), QStringLiteral("Tallyfox, 42 Prozent genutzt"));
}

TEST(GermanTexts, linesOfTheMenuIncludeTheirFigures)
{
    const TranslatedApplication application{german()};
    EXPECT_EQ(someMenuFigures(),
              (QStringList{QStringLiteral("43% genutzt · Reset in 2 Std."),
                           QStringLiteral("Claude: Warten auf erste Aktualisierung"),
                           QStringLiteral("Codex: heute 1.0K Tokens, 1.0K in 30 Tagen")}));
}

TEST(FrenchTexts, sentencesIncludeTheirFigures)
{
    const TranslatedApplication application{QLocale{QStringLiteral("fr_FR")}};
    const ProviderCardModel model = cardWithTwoQuotas();
    EXPECT_EQ(model.note, QStringLiteral(u"Renouvelé dans 2\u00A0h"));
    ASSERT_TRUE(model.quota && model.quota->weekly);
    EXPECT_EQ(model.quota->weekly->used, QStringLiteral(u"Semaine\u202F: 61\u202F% utilisé"));
    EXPECT_EQ(refreshStatusText(now, Calendar::utc(), QLocale{}), QStringLiteral(u"Actualisé à 14:05"));
    EXPECT_EQ(someMenuFigures(),
              (QStringList{QStringLiteral(u"43\u202F% utilisé · Renouvelé dans 2\u00A0h"),
                           QStringLiteral(u"Claude\u202F: En attente de la première actualisation"),
                           QStringLiteral(u"Codex\u202F: 1.0K tokens aujourd’hui, 1.0K en 30 jours")}));
}

TEST(SpanishTexts, sentencesIncludeTheirFigures)
{
    const TranslatedApplication application{QLocale{QStringLiteral("es_ES")}};
    const ProviderCardModel model = cardWithTwoQuotas();
    EXPECT_EQ(model.note, QStringLiteral("Se renueva dentro de 2 h"));
    ASSERT_TRUE(model.quota && model.quota->weekly);
    EXPECT_EQ(model.quota->weekly->used, QStringLiteral(u"Semana: 61\u00A0% usado"));
    EXPECT_EQ(refreshStatusText(now, Calendar::utc(), QLocale{}), QStringLiteral("Actualizado: 14:05"));
    EXPECT_EQ(someMenuFigures(),
              (QStringList{QStringLiteral(u"43\u00A0% usado · Se renueva dentro de 2 h"),
                           QStringLiteral(u"Claude: En espera de la primera actualización"),
                           QStringLiteral(u"Codex: 1.0K tokens hoy, 1.0K en 30 días")}));
}

TEST(GermanFormats, relativePhrasesFollowTheLocale)
{
    EXPECT_EQ(relativeTimeText(now + 2h, now, german()), QStringLiteral("in 2 Std."));
    EXPECT_EQ(relativeTimeText(now - 5min, now, german()), QStringLiteral("vor 5 Min."));
    EXPECT_EQ(relativeTimeText(now + 24h, now, german()), QStringLiteral("in 1 Tag"));
    EXPECT_EQ(relativeTimeText(now + 14 * 24h, now, german()), QStringLiteral("in 2 Wochen"));
}

TEST(GermanFormats, daysFollowTheLocale)
{
    EXPECT_EQ(DayFormat{german()}.text({2026, 11, 21}), QStringLiteral("21. Nov. 2026"));
    EXPECT_EQ(DayFormat{german()}.text({2026, 3, 1}), QStringLiteral(u"1. März 2026"));
}

TEST(GermanFormats, onlyWholeCountsFollowTheLocale)
{
    EXPECT_EQ(tokenText(1'300'000, german()), QStringLiteral("1.3M"));
    EXPECT_EQ(tokenText(1'000, german()), QStringLiteral("1.0K"));
    EXPECT_EQ(tokenText(999, german()), QStringLiteral("999"));
    EXPECT_EQ(tokenText(-1'234'567, german()), QStringLiteral("-1.234.567"));
    const TranslatedApplication application{german()};
    EXPECT_EQ(thresholdText(22.5), QStringLiteral("22%"));
}

TEST(GermanFormats, drawingsFormatNumbersAndDaysForTheLocale)
{
    const TranslatedApplication application{german()};
    QWidget window;
    HeatMap map{Theme::accent(), &window};
    map.setCells({{QDate{2026, 11, 21}, 12'500, 1}, {QDate{2026, 11, 22}, -4'321, 1}});
    const std::vector<AccessibleElement> elements = map.accessibleElements();
    ASSERT_EQ(elements.size(), 2U);
    EXPECT_EQ(elements[0].name, QStringLiteral("21. Nov. 2026: 12.5K"));
    EXPECT_EQ(elements[1].name, QStringLiteral("22. Nov. 2026: -4.321"));
}

} // namespace
} // namespace tallyfox::test
