#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Controls/PushButton.h"
#include "Tallyfox/Agent/Controls/StepSlider.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Settings/AccountSettingsView.h"
#include "Tallyfox/Agent/Settings/GeneralSettingsView.h"
#include "Tallyfox/Agent/Settings/SettingsView.h"
#include "Tallyfox/Agent/Settings/SettingsWindow.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QKeySequence>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTabBar>
#include <gtest/gtest.h>

#include <algorithm>

namespace tallyfox::test {
namespace {

struct Item {
    QPoint position;
    QString text;
};

/// The text of a label or button, or the accessible name of a control in brackets; nothing for other widgets.
std::optional<Item> itemOf(const QWidget& widget, const QWidget& form)
{
    const bool isControl = qobject_cast<const QCheckBox*>(&widget) || qobject_cast<const QComboBox*>(&widget)
        || qobject_cast<const StepSlider*>(&widget);
    const bool isText = qobject_cast<const QLabel*>(&widget) || qobject_cast<const PushButton*>(&widget);
    if (!widget.isVisible() || !(isControl || isText))
        return std::nullopt;
    const QString text = isControl ? u'[' + widget.accessibleName() + u']' : widget.property("text").toString();
    return Item{widget.mapTo(&form, QPoint{0, widget.height() / 2}), text};
}

/// All texts of a form, row by row and from left to right.
QStringList contentOf(const QWidget& form)
{
    std::vector<Item> items;
    for (const QWidget* widget : form.findChildren<QWidget*>()) {
        if (const auto item = itemOf(*widget, form))
            items.push_back(*item);
    }
    std::sort(items.begin(), items.end(), [](const Item& one, const Item& other) {
        const bool isSameRow = std::abs(one.position.y() - other.position.y()) < 5;
        return isSameRow ? one.position.x() < other.position.x() : one.position.y() < other.position.y();
    });
    QStringList content;
    for (const Item& item : items)
        content << item.text;
    return content;
}

class SettingsViewTest : public testing::Test {
protected:
    /// Before the first view, whose interfaces Qt may ask for at once.
    static void SetUpTestSuite()
    {
        installAccessibleSettings();
    }

    SettingsViewTest()
    {
        UsageSnapshot snapshot;
        snapshot.states = {initialState(Provider::claude, distantPast, Calendar::utc()),
                           initialState(Provider::codex, distantPast, Calendar::utc())};
        m_view.setUsage(snapshot);
        m_view.resize(m_view.minimumSize());
        showActive(m_view);
    }

    [[nodiscard]] QTabBar& tabs() const
    {
        return *m_view.findChild<QTabBar*>();
    }
    QWidget& chosen(int tab)
    {
        tabs().setCurrentIndex(tab);
        QWidget* const form = m_view.findChild<QStackedWidget*>()->currentWidget();
        settle();
        return *form;
    }

    /// All tab stops after the tab bar, until the focus is back there.
    QStringList reachedByTab()
    {
        QStringList reached;
        tabs().setFocus();
        for (int steps = 0; steps < 20; ++steps) {
            pressKey(*m_view.focusWidget(), Qt::Key_Tab);
            if (m_view.focusWidget() == &tabs())
                break;
            const auto item = itemOf(*m_view.focusWidget(), m_view);
            reached << (item ? item->text : QStringLiteral("neither control nor button"));
        }
        return reached;
    }

    SettingsView m_view{QStringLiteral("9.8.7")};
};

TEST_F(SettingsViewTest, isAtLeastNineHundredByFourHundredAndEighty)
{
    EXPECT_EQ(m_view.minimumSize(), QSize(900, 480));
}

TEST_F(SettingsViewTest, hasFourTabsStartingWithGeneral)
{
    QStringList titles;
    for (int tab = 0; tab < tabs().count(); ++tab)
        titles << QAccessible::queryAccessibleInterface(&tabs())->child(tab)->text(QAccessible::Name);
    EXPECT_EQ(titles, textList({u"General", u"Accounts", u"Notifications", u"About"}));
    EXPECT_EQ(tabs().currentIndex(), 0);
    EXPECT_EQ(accessibleRole(tabs()), QAccessible::PageTabList);
}

TEST_F(SettingsViewTest, selectedTabIsExposed)
{
    tabs().setCurrentIndex(2);
    QAccessibleInterface* const bar = QAccessible::queryAccessibleInterface(&tabs());
    EXPECT_EQ(bar->text(QAccessible::Name), QStringLiteral("Settings"));
    ASSERT_EQ(bar->childCount(), 4);
    for (int tab = 0; tab < 4; ++tab) {
        const QAccessible::State state = bar->child(tab)->state();
        EXPECT_TRUE(state.selectable) << tab;
        EXPECT_EQ(state.selected, tab == 2) << tab;
        EXPECT_EQ(bar->indexOfChild(bar->child(tab)), tab);
    }
    EXPECT_EQ(bar->child(-1), nullptr);
    EXPECT_EQ(bar->child(4), nullptr);
    tabs().setFocus();
    EXPECT_EQ(bar->focusChild(), bar->child(2));
    EXPECT_EQ(bar->child(1)->text(QAccessible::Accelerator), QStringLiteral("Alt+A"));
}

TEST_F(SettingsViewTest, screenReaderSelectsTabs)
{
    QAccessibleInterface* const tab = QAccessible::queryAccessibleInterface(&tabs())->child(1);
    ASSERT_NE(tab->actionInterface(), nullptr);
    EXPECT_EQ(tab->actionInterface()->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
    tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(tabs().currentIndex(), 1);
    QAccessibleInterface* const bar = tab->parent();
    EXPECT_EQ(bar->childAt(tab->rect().center().x(), tab->rect().center().y()), tab);
}

TEST_F(SettingsViewTest, accountsPrecedeTheSyncButtonForAScreenReader)
{
    const QWidget& form = chosen(1);
    const auto* const sync = form.findChild<PushButton*>();
    const QWidget* const account = form.findChild<IconTile*>()->parentWidget();
    // Screen readers follow the order of the widgets.
    const QObjectList& rows = sync->parentWidget()->parentWidget()->children();
    EXPECT_LT(rows.indexOf(account->parentWidget()), rows.indexOf(sync->parentWidget()));
}

TEST_F(SettingsViewTest, generalTabHasItsThreeSections)
{
    EXPECT_EQ(contentOf(chosen(0)),
              textList({u"Usage", u"Refresh interval", u"[Refresh interval]", u"App Access", u"Launch at Login",
                        u"[Launch at Login]", u"Show Dock Icon", u"[Show Dock Icon]", u"Global Shortcut",
                        u"\u2325\u2318B", u"Appearance", u"Theme", u"Tallyfox Warm", u"Show Account Emails",
                        u"[Show Account Emails]", u"Ranking Privacy", u"[Ranking Privacy]"}));
}

TEST_F(SettingsViewTest, shortcutThatCanBeRequestedHasAButtonThatFits)
{
    m_view.general().setShortcutState(ShortcutState::onRequest);
    const QWidget& form = chosen(0);
    const QString text = QStringLiteral(u"Set Up\u2026");
    EXPECT_EQ(contentOf(form).indexOf(text), contentOf(form).indexOf(QStringLiteral(u"\u2325\u2318B")) + 1);
    EXPECT_EQ(dynamic_cast<const QScrollArea&>(form).verticalScrollBar()->maximum(), 0);
    EXPECT_TRUE(reachedByTab().contains(text));
}

TEST_F(SettingsViewTest, accountsTabHasItsThreeSections)
{
    EXPECT_EQ(contentOf(chosen(1)),
              textList({u"Connected Accounts", u"Claude", u"Unavailable", u"Waiting for first refresh", u"Codex",
                        u"Unavailable", u"Waiting for first refresh", u"Sync Accounts", u"Local Usage History",
                        u"Home directory access", u"Required", u"Allow Home Folder Access",
                        u"Claude and Codex usage metadata is read in place and is never copied.", u"Previously Removed",
                        u"No removed accounts"}));
}

TEST_F(SettingsViewTest, notificationsTabHasItsTwoSections)
{
    EXPECT_EQ(contentOf(chosen(2)),
              textList({u"Usage Alerts", u"Notifications", u"[Notifications]", u"Claude threshold",
                        u"[Claude threshold]", u"20%", u"Codex threshold", u"[Codex threshold]", u"20%",
                        u"You will be notified when remaining usage falls below the threshold.", u"Updates",
                        u"Service and model news", u"[Service and model news]"}));
}

TEST_F(SettingsViewTest, aboutTabHasItsTexts)
{
    EXPECT_EQ(contentOf(chosen(3)),
              textList({u"Tallyfox", u"Version 9.8.7", u"Privacy", u"Processing", u"100% Local", u"Raw transcripts",
                        u"Never stored", u"Provider credentials", u"Never read"}));
}

TEST_F(SettingsViewTest, nothingIsElidedOrScrolledInAnyTab)
{
    for (int tab = 0; tab < 4; ++tab) {
        const QWidget& form = chosen(tab);
        EXPECT_EQ(dynamic_cast<const QScrollArea&>(form).verticalScrollBar()->maximum(), 0) << tab;
        for (const TextLabel* label : form.findChildren<TextLabel*>())
            EXPECT_FALSE(label->isVisible() && label->isElided()) << label->text().toStdString();
    }
}

TEST_F(SettingsViewTest, tabOrderReachesEveryControl)
{
    for (int tab = 0; tab < 4; ++tab) {
        const QStringList wanted =
            contentOf(chosen(tab)).filter(QRegularExpression{QStringLiteral("^\\[|^Sync|^Allow Home")});
        EXPECT_EQ(reachedByTab(), wanted) << tab;
    }
}

/// Qt uses the value of a combo box as its name; its purpose is exposed through the label.
TEST_F(SettingsViewTest, intervalHasAnAccessibleName)
{
    auto* const picker = m_view.findChild<QComboBox*>();
    QStringList labels;
    for (const auto& [label, relation] : QAccessible::queryAccessibleInterface(picker)->relations()) {
        if (relation == QAccessible::Label)
            labels << label->text(QAccessible::Name);
    }
    EXPECT_EQ(labels, textList({u"Refresh interval"}));
    EXPECT_EQ(accessibleRole(*picker), QAccessible::ComboBox);
    EXPECT_EQ(accessibleValue(*picker), QStringLiteral("5 minutes"));
}

TEST_F(SettingsViewTest, arrowKeysAndMnemonicsSelectTabs)
{
    tabs().setFocus();
    pressKey(tabs(), Qt::Key_Right);
    EXPECT_EQ(tabs().currentIndex(), 1);
    QStringList letters;
    for (int tab = 0; tab < 4; ++tab)
        letters << QKeySequence::mnemonic(tabs().tabText(tab)).toString();
    EXPECT_EQ(letters, textList({u"Alt+G", u"Alt+A", u"Alt+N", u"Alt+B"}));
}

TEST_F(SettingsViewTest, mnemonicsAreUnderlinedWhileAltIsHeld)
{
    const QImage before = tabs().grab().toImage();
    QKeyEvent press{QEvent::KeyPress, Qt::Key_Alt, Qt::AltModifier};
    QApplication::sendEvent(&m_view, &press);
    EXPECT_NE(tabs().grab().toImage(), before);
    QKeyEvent release{QEvent::KeyRelease, Qt::Key_Alt, Qt::NoModifier};
    QApplication::sendEvent(&m_view, &release);
    EXPECT_EQ(tabs().grab().toImage(), before);
}

TEST_F(SettingsViewTest, coloursIgnoreThePaletteOfTheDesktop)
{
    const QPalette before = QApplication::palette();
    QApplication::setPalette(QPalette{Qt::black});
    const QImage drawn = m_view.grab().toImage();
    EXPECT_TRUE(isNear(drawn.pixel(4, 4), Theme::canvas().rgb()));
    EXPECT_TRUE(isNear(drawn.pixel(40, 400), Theme::canvas().rgb()));
    EXPECT_TRUE(isNear(drawn.pixel(300, 122), Theme::surface().rgb()));
    QApplication::setPalette(before);
}

TEST_F(SettingsViewTest, generalTabEmitsWheneverItAppears)
{
    int times = 0;
    QObject::connect(&m_view.general(), &GeneralSettingsView::appeared, &m_view, [&] { ++times; });
    tabs().setCurrentIndex(2);
    EXPECT_EQ(times, 0);
    tabs().setCurrentIndex(0);
    EXPECT_EQ(times, 1);
    m_view.hide();
    m_view.show();
    EXPECT_EQ(times, 2);
}

} // namespace
} // namespace tallyfox::test
