#include "Engine/Store/StoreFixture.h"
#include "Support/Agent/FakeDesktop.h"
#include "Tallyfox/Agent/Charts/LineChart.h"
#include "Tallyfox/Agent/Controls/AccessibleElements.h"
#include "Tallyfox/Agent/Shell/AppDelegate.h"

#include <QAccessible>
#include <QApplication>
#include <QMouseEvent>

#include <atomic>

namespace tallyfox::test {
namespace {

class AppDelegateTest : public StoreTest {
protected:
    AppDelegateTest()
    {
        writeClaudeHistory(1'000);
        environment.fetchQuota = [this](const std::stop_token&) {
            ++fetches;
            return std::variant<QuotaSnapshot, QuotaError>{exactQuota(percent)};
        };
    }

    /// A launched agent whose first refresh is over.
    std::unique_ptr<AppDelegate> launched()
    {
        auto delegate = std::make_unique<AppDelegate>(desktop.environment(environment), QStringLiteral("1.2.3"));
        delegate->applicationDidFinishLaunching();
        waitForRefresh(1);
        return delegate;
    }

    void waitForRefresh(int number)
    {
        EXPECT_TRUE(
            spinUntil([&] { return fetches >= number && desktop.statusItem->contents.size() > unsigned(number); }));
    }

    static QWidget* visibleWindow(const QString& name)
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->objectName() == name && widget->isVisible())
                return widget;
        }
        return nullptr;
    }

    static QWidget* popover()
    {
        return visibleWindow(QStringLiteral("popover"));
    }

    static QWidget* settingsWindow()
    {
        return visibleWindow(QStringLiteral("settings"));
    }

    /// What Qt sends to a popup for a button event elsewhere on the desktop.
    static void sendOutside(QWidget& popup, QEvent::Type type)
    {
        const QPointF outside{-20, -20};
        const auto buttons = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event{type, outside, popup.mapToGlobal(outside), Qt::LeftButton, buttons, Qt::NoModifier};
        QApplication::sendEvent(&popup, &event);
    }

    double percent = 42.5;
    std::atomic<int> fetches = 0;
    FakeDesktop desktop;
};

TEST_F(AppDelegateTest, launchShowsTheItemRegistersTheShortcutAndRefreshes)
{
    const auto delegate = launched();
    EXPECT_EQ(fetches, 1);
    EXPECT_EQ(desktop.events, (std::vector<std::string>{"status item", "shortcut"}));
    EXPECT_EQ(popover(), nullptr);
}

TEST_F(AppDelegateTest, statusItemFollowsTheCombinedPercentage)
{
    const auto delegate = launched();
    const auto& contents = desktop.statusItem->contents;
    EXPECT_EQ(contents.front(), StatusItemContent{});
    EXPECT_EQ(contents.back(), StatusItemContent{43});
}

TEST_F(AppDelegateTest, menuFollowsEachPublicationWhileThePopoverIsClosed)
{
    const auto delegate = launched();
    const auto firstLine = [this] { return desktop.statusItem->menu.figures(true).value(0); };
    EXPECT_TRUE(firstLine().startsWith(QStringLiteral("43% used"))) << firstLine().toStdString();
    ASSERT_TRUE(spinUntil([&] { return desktop.statusItem->menuChanges > 1; })) << "panels are told";
    const int before = desktop.statusItem->menuChanges;
    percent = 61;
    Q_EMIT desktop.statusItem->chosen(StatusMenuAction::refresh);
    waitForRefresh(2);
    EXPECT_TRUE(firstLine().startsWith(QStringLiteral("61% used"))) << firstLine().toStdString();
    EXPECT_TRUE(spinUntil([&] { return desktop.statusItem->menuChanges > before; }));
    EXPECT_EQ(popover(), nullptr);
}

TEST_F(AppDelegateTest, menuOpensThePopoverOnceAndTheSettings)
{
    const auto delegate = launched();
    Q_EMIT desktop.statusItem->chosen(StatusMenuAction::open);
    ASSERT_NE(popover(), nullptr);
    Q_EMIT desktop.statusItem->chosen(StatusMenuAction::open);
    EXPECT_NE(popover(), nullptr) << "it opens, and does not toggle";
    Q_EMIT desktop.statusItem->chosen(StatusMenuAction::settings);
    EXPECT_NE(settingsWindow(), nullptr);
    EXPECT_EQ(popover(), nullptr);
}

TEST_F(AppDelegateTest, menusCheckMarkFollowsTheDesktop)
{
    const auto delegate = launched();
    Q_EMIT desktop.statusItem->chosen(StatusMenuAction::keepAwake);
    ASSERT_EQ(desktop.inhibitor->reasons.size(), 1U);
    EXPECT_FALSE(desktop.statusItem->menu.keepsAwake) << "the desktop has not agreed yet";
    Q_EMIT desktop.inhibitor->inhibition->began();
    EXPECT_TRUE(desktop.statusItem->menu.keepsAwake);
    Q_EMIT desktop.statusItem->chosen(StatusMenuAction::keepAwake);
    EXPECT_FALSE(desktop.statusItem->menu.keepsAwake);
}

TEST_F(AppDelegateTest, refreshesAtTheStoredIntervalOrEachFiveMinutes)
{
    UserDefaults defaults = desktop.environment(environment).userDefaults;
    EXPECT_EQ(launched()->refreshInterval(), std::chrono::minutes{5});
    fetches = 0;
    ASSERT_TRUE(defaults.set(&Preferences::refreshMinutes, 15));
    EXPECT_EQ(launched()->refreshInterval(), std::chrono::minutes{15});
}

TEST_F(AppDelegateTest, clickOpensThePopoverAndRefreshes)
{
    const auto delegate = launched();
    Q_EMIT desktop.statusItem->activated(QPoint{700, 5});
    ASSERT_NE(popover(), nullptr);
    EXPECT_EQ(popover()->size(), QSize(420, 680));
    EXPECT_TRUE(spinUntil([&] { return fetches == 2; }));
}

TEST_F(AppDelegateTest, daysAreLabelledAsTheyWereCountedUntilTheyAreCountedInAnotherZone)
{
    installAccessibleElements();
    Calendar calendar = zone("Pacific/Auckland");
    environment.calendar = [&calendar] { return calendar; };
    const auto delegate = launched();
    calendar = zone("America/Los_Angeles"); // where Auckland's 22 November begins on the 21st
    delegate->togglePopover();
    const auto lastDay = [] {
        auto* const chart = popover()->findChild<LineChart*>();
        QAccessibleInterface* const series = QAccessible::queryAccessibleInterface(chart)->child(0);
        return series->child(series->childCount() - 1)->text(QAccessible::Name).section(QLatin1Char{':'}, 0, 0);
    };
    EXPECT_EQ(lastDay(), QStringLiteral("Nov 22, 2026"));
    waitForRefresh(2);
    EXPECT_TRUE(spinUntil([&] { return lastDay() == QStringLiteral("Nov 21, 2026"); }));
}

TEST_F(AppDelegateTest, secondClickClosesThePopover)
{
    const auto delegate = launched();
    Q_EMIT desktop.statusItem->activated(QPoint{700, 5});
    Q_EMIT desktop.statusItem->activated(QPoint{700, 5});
    EXPECT_EQ(popover(), nullptr);
}

TEST_F(AppDelegateTest, shortcutOpensAndCloses)
{
    const auto delegate = launched();
    Q_EMIT desktop.shortcut->activated();
    EXPECT_NE(popover(), nullptr);
    EXPECT_TRUE(spinUntil([&] { return fetches == 2; }));
    Q_EMIT desktop.shortcut->activated();
    EXPECT_EQ(popover(), nullptr);
}

TEST_F(AppDelegateTest, clickOutsideClosesThePopoverAtTheRelease)
{
    const auto delegate = launched();
    delegate->togglePopover();
    QWidget* const popup = popover();
    ASSERT_NE(popup, nullptr);
    sendOutside(*popup, QEvent::MouseButtonPress);
    EXPECT_TRUE(popup->isVisible());
    sendOutside(*popup, QEvent::MouseButtonRelease);
    EXPECT_FALSE(popup->isVisible());
}

TEST_F(AppDelegateTest, pressInsideReleasedOutsideLeavesThePopoverOpen)
{
    const auto delegate = launched();
    delegate->togglePopover();
    ASSERT_NE(popover(), nullptr);
    sendOutside(*popover(), QEvent::MouseButtonRelease);
    EXPECT_NE(popover(), nullptr);
}

TEST_F(AppDelegateTest, shortcutAfterAClosingClickOpensAgain)
{
    const auto delegate = launched();
    delegate->togglePopover();
    QWidget* const popup = popover();
    ASSERT_NE(popup, nullptr);
    sendOutside(*popup, QEvent::MouseButtonPress);
    sendOutside(*popup, QEvent::MouseButtonRelease);
    Q_EMIT desktop.shortcut->activated();
    EXPECT_NE(popover(), nullptr);
}

TEST_F(AppDelegateTest, showingAnOpenPopoverLeavesItOpen)
{
    const auto delegate = launched();
    delegate->showPopover();
    delegate->showPopover();
    EXPECT_NE(popover(), nullptr);
}

TEST_F(AppDelegateTest, popoverHasTheKeyboardFocusAtOnce)
{
    const auto delegate = launched();
    delegate->togglePopover();
    ASSERT_NE(popover(), nullptr);
    ASSERT_NE(popover()->focusWidget(), nullptr);
    EXPECT_TRUE(popover()->focusWidget()->hasFocus());
}

TEST_F(AppDelegateTest, settingsAreOneWindowThatIsHiddenAndShownAgain)
{
    const auto delegate = launched();
    delegate->showSettings();
    QWidget* const window = settingsWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Tallyfox Settings"));
    EXPECT_EQ(window->size(), QSize(900, 480));
    delegate->showSettings();
    EXPECT_EQ(settingsWindow(), window);
    window->close();
    EXPECT_EQ(settingsWindow(), nullptr);
    delegate->showSettings();
    EXPECT_EQ(settingsWindow(), window);
}

TEST_F(AppDelegateTest, cupIsFullWhileTheDesktopKeepsTheComputerAwake)
{
    const auto delegate = launched();
    delegate->togglePopover();
    auto* window = qobject_cast<PopoverWindow*>(popover());
    ASSERT_NE(window, nullptr);
    Q_EMIT window->view().keepAwakeToggled();
    ASSERT_EQ(desktop.inhibitor->reasons, std::vector{QStringLiteral("Tallyfox Keep Mac Awake")});
    const QImage before = window->grab().toImage();
    Q_EMIT desktop.inhibitor->inhibition->began();
    EXPECT_NE(window->grab().toImage(), before);
    Q_EMIT desktop.inhibitor->inhibition->ended();
    EXPECT_EQ(window->grab().toImage(), before);
}

TEST_F(AppDelegateTest, settingsCloseThePopover)
{
    const auto delegate = launched();
    delegate->togglePopover();
    delegate->showSettings();
    EXPECT_EQ(popover(), nullptr);
}

} // namespace
} // namespace tallyfox::test
