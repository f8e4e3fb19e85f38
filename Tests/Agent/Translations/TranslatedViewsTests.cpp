#include "Agent/Translations/PseudoTranslator.h"
#include "Agent/Translations/ShownTexts.h"
#include "Agent/Translations/TranslatedApplication.h"
#include "Gallery/GalleryStates.h"
#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Charts/StackedBarChart.h"
#include "Tallyfox/Agent/Controls/AccessibleElements.h"
#include "Tallyfox/Agent/Popover/PopoverView.h"
#include "Tallyfox/Agent/Settings/SettingsView.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabBar>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

/// GoogleTest finds it by argument-dependent lookup.
void PrintTo(const QString& text, std::ostream* out)
{
    *out << text.toStdString();
}

namespace tallyfox::test {

namespace {

using testing::IsEmpty;

/// Shows every tab of the popover and the settings in every situation except the one named `skipped`.
void forEachView(const QString& skipped, const std::function<void(QWidget& view)>& look)
{
    for (const gallery::GalleryState& state : gallery::galleryStates()) {
        if (state.name == skipped)
            continue;
        SCOPED_TRACE(state.name.toStdString());
        for (const PopoverTab tab : allPopoverTabs) {
            SCOPED_TRACE(rawValue(tab));
            PopoverView view{tab};
            view.setUsage(state.usage);
            view.show();
            QCoreApplication::sendPostedEvents();
            look(view);
        }
        SettingsView view{QStringLiteral("0.1.0")};
        view.setPreferences({});
        view.setUsage(state.usage);
        view.show();
        auto* const tabs = view.findChild<QTabBar*>();
        ASSERT_EQ(tabs->count(), 4);
        for (int tab = 0; tab < tabs->count(); ++tab) {
            SCOPED_TRACE(tabs->tabText(tab).toStdString());
            tabs->setCurrentIndex(tab);
            QCoreApplication::sendPostedEvents();
            look(view);
        }
    }
}

void forEachView(const std::function<void(QWidget& view)>& look)
{
    forEachView({}, look);
}

/// Names of products and keys, and figures are the same in all languages.
bool needsTranslation(const QString& text)
{
    static const QStringList same{
        QStringLiteral("Tallyfox"), QStringLiteral("Claude"),         QStringLiteral("Claude Code"),
        QStringLiteral("Codex"),    QStringLiteral("ChatGPT"),        QStringLiteral("Gemini"),
        QStringLiteral("Windsurf"), QStringLiteral(u"\u2325\u2318B"), QStringLiteral(u"\u2014")};
    static const QRegularExpression figure{QStringLiteral("^\\$?-?[0-9.,]+[KM%]?$")};
    return !text.isEmpty() && !same.contains(text) && !figure.match(text).hasMatch();
}

bool isTranslated(const QString& text)
{
    return text.startsWith(QLatin1Char{'['}) && text.endsWith(QLatin1Char{']'});
}

std::vector<QString> untranslated(const std::vector<QString>& texts)
{
    std::vector<QString> found;
    std::copy_if(texts.begin(), texts.end(), std::back_inserter(found),
                 [](const QString& text) { return needsTranslation(text) && !isTranslated(text); });
    return found;
}

TEST(PseudoText, isLongerAndKeepsPlaceholdersAndMnemonics)
{
    EXPECT_EQ(pseudoText(QStringLiteral("&Reset %1 in %n")), QStringLiteral(u"[&Rëšëŧ %1 ïñ %n ~~~~~~~~]"));
}

TEST(TranslatedViews, everyTextIsTranslated)
{
    const PseudoTranslator pseudo;
    installAccessibleElements();
    forEachView([](QWidget& view) {
        const std::vector<QString> texts = shownTexts(view);
        EXPECT_THAT(untranslated(texts), IsEmpty());
        EXPECT_GT(std::count_if(texts.begin(), texts.end(), isTranslated), 8);
    });
}

TEST(TranslatedViews, tooltipOfAChartIsTranslated)
{
    const PseudoTranslator pseudo;
    PopoverView view{PopoverTab::dashboard};
    view.setUsage(gallery::galleryStates().at(1).usage);
    view.show();
    settle();
    auto& chart = *view.findChild<StackedBarChart*>();
    const QPoint lastDay = chart.accessibleElements().at(0).children.back().frame.center();
    const QStringList lines = tooltipAt(chart, lastDay).split(QLatin1Char{'\n'});
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines.at(0), QStringLiteral("Nov 21, 2026"));
    EXPECT_TRUE(isTranslated(lines.at(1))) << lines.at(1).toStdString();
    EXPECT_TRUE(isTranslated(lines.at(2))) << lines.at(2).toStdString();
}

TEST(TranslatedViews, longTextsAreNotMisplaced)
{
    const PseudoTranslator pseudo;
    forEachView([](QWidget& view) { EXPECT_THAT(misplacements(view), IsEmpty()); });
}

TEST(TranslatedViews, textsOfEveryLanguageAreNotMisplaced)
{
    forEachLanguage([] { forEachView([](QWidget& view) { EXPECT_THAT(misplacements(view), IsEmpty()); }); });
}

TEST(TranslatedViews, textsOfEveryLanguageFitAsWhole)
{
    forEachLanguage([] {
        forEachView(QStringLiteral("longest"), [](QWidget& view) { EXPECT_THAT(elidedTexts(view), IsEmpty()); });
    });
}

TEST(ShownTexts, untranslatedAndMisplacedTextsAreFound)
{
    QWidget window;
    window.resize(200, 100);
    auto* const label = new QLabel{QStringLiteral("Forgotten"), &window};
    label->setGeometry(10, 10, 100, 40);
    auto* const button = new QPushButton{QStringLiteral("[A text that is far too long]"), &window};
    button->setGeometry(100, 10, 60, 40);
    auto* const outside = new QLabel{QStringLiteral("[Outside]"), &window};
    outside->setGeometry(150, 60, 100, 40);
    window.show();
    EXPECT_THAT(untranslated(shownTexts(window)), testing::ElementsAre(QStringLiteral("Forgotten")));
    EXPECT_EQ(misplacements(window).size(), 3U) << "one overlap, one clipped text, one widget outside its parent";
    EXPECT_THAT(elidedTexts(window), testing::ElementsAre(button->text()));
}

} // namespace
} // namespace tallyfox::test
