#include "Support/Agent/FakeDesktop.h"
#include "Tallyfox/Agent/Controls/PushButton.h"
#include "Tallyfox/Agent/Controls/StepSlider.h"
#include "Tallyfox/Agent/Controls/ToggleSwitch.h"
#include "Tallyfox/Agent/Settings/GeneralSettingsView.h"
#include "Tallyfox/Agent/Settings/SettingsController.h"
#include "Tallyfox/Agent/Settings/SettingsView.h"

#include <QComboBox>
#include <QTabBar>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>

namespace tallyfox::test {
namespace {

class SettingsControllerTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path file() const
    {
        return m_folder.path() / "tallyfox" / "tallyfox.ini";
    }
    [[nodiscard]] UserDefaults stored() const
    {
        return UserDefaults{file()};
    }

    /// As the program does when the window is first opened.
    void open()
    {
        m_controller.reset();
        m_view = std::make_unique<SettingsView>(QString{});
        const SettingsServices services{.userDefaults = stored(),
                                        .loginItem = loginItem,
                                        .notificationCenter = notifications,
                                        .activationPolicy = policy,
                                        .shortcut = shortcut};
        m_controller = std::make_unique<SettingsController>(*m_view, services);
        QObject::connect(m_controller.get(), &SettingsController::refreshIntervalChanged, m_controller.get(),
                         [this](qint64 minutes) { intervals.push_back(minutes); });
        m_view->show();
    }

    void endController()
    {
        m_controller.reset();
    }

    [[nodiscard]] ToggleSwitch& toggle(const char16_t* name) const
    {
        for (ToggleSwitch* each : m_view->findChildren<ToggleSwitch*>()) {
            if (each->accessibleName() == QString::fromUtf16(name))
                return *each;
        }
        throw std::out_of_range{"no such toggle"};
    }
    [[nodiscard]] StepSlider& slider(const char16_t* name) const
    {
        for (StepSlider* each : m_view->findChildren<StepSlider*>()) {
            if (each->accessibleName() == QString::fromUtf16(name))
                return *each;
        }
        throw std::out_of_range{"no such slider"};
    }
    [[nodiscard]] QComboBox& interval() const
    {
        return *m_view->findChild<QComboBox*>();
    }
    /// The tooltip of the shortcut's row, which is also its accessible description.
    [[nodiscard]] QString shortcutHelp() const
    {
        for (const SettingsValue* value : m_view->findChildren<SettingsValue*>()) {
            if (value->text() != QStringLiteral(u"\u2325\u2318B"))
                continue;
            const QString help = value->parentWidget()->toolTip();
            EXPECT_EQ(value->accessibleDescription(), help);
            return help;
        }
        throw std::out_of_range{"no shortcut"};
    }
    /// Null while it is hidden.
    [[nodiscard]] PushButton* shortcutButton() const
    {
        PushButton* const button = m_view->general().findChild<PushButton*>();
        return button->isVisible() ? button : nullptr;
    }
    void showTab(int tab) const
    {
        m_view->findChild<QTabBar*>()->setCurrentIndex(tab);
    }

    [[nodiscard]] SettingsView& view() const
    {
        return *m_view;
    }
    [[nodiscard]] SettingsController& controller() const
    {
        return *m_controller;
    }

    FakeLoginItem loginItem;
    FakeNotificationCenter notifications;
    FakeActivationPolicySwitch policy;
    FakeShortcut shortcut;
    std::vector<qint64> intervals;

private:
    ScratchFolder m_folder;
    std::unique_ptr<SettingsView> m_view;
    std::unique_ptr<SettingsController> m_controller;
};

TEST_F(SettingsControllerTest, nothingIsWrittenOrAppliedInitially)
{
    open();
    for (const int tab : {1, 2, 3, 0})
        showTab(tab);
    EXPECT_FALSE(std::filesystem::exists(file().parent_path()));
    EXPECT_EQ(loginItem.registrations + loginItem.unregistrations, 0);
    EXPECT_TRUE(notifications.requests.empty());
    EXPECT_TRUE(policy.policies.empty());
    EXPECT_TRUE(intervals.empty());
}

TEST_F(SettingsControllerTest, shortcutIsCheckedWheneverTheTabAppears)
{
    open();
    EXPECT_EQ(shortcut.checks, 1);
    showTab(1);
    showTab(0);
    EXPECT_EQ(shortcut.checks, 2);
    EXPECT_EQ(shortcut.requests, 0);
}

TEST_F(SettingsControllerTest, shortcutThatIsNotInForceIsExplainedAsItChanges)
{
    open();
    EXPECT_TRUE(shortcutHelp().contains(QStringLiteral("tallyfox --toggle"))) << "initially not in force";
    EXPECT_EQ(shortcutButton(), nullptr);
    shortcut.setState(ShortcutState::inForce);
    EXPECT_EQ(shortcutHelp(), QString{});
    EXPECT_EQ(shortcutButton(), nullptr);
    shortcut.setState(ShortcutState::onRequest);
    EXPECT_TRUE(shortcutHelp().contains(QStringLiteral("tallyfox --toggle")));
    ASSERT_NE(shortcutButton(), nullptr);
    shortcutButton()->click();
    EXPECT_EQ(shortcut.requests, 1);
    shortcut.setState(ShortcutState::notInForce);
    EXPECT_TRUE(shortcutHelp().contains(QStringLiteral("tallyfox --toggle")));
    EXPECT_EQ(shortcutButton(), nullptr);
}

TEST_F(SettingsControllerTest, selectedIntervalIsStoredAndApplied)
{
    open();
    interval().setCurrentIndex(0);
    EXPECT_EQ(readFile(file()), "[General]\nrefreshMinutes=1\n");
    EXPECT_EQ(intervals, std::vector<qint64>{1});
}

TEST_F(SettingsControllerTest, everyPreferenceSurvivesARestart)
{
    const auto switchedOn = {u"Launch at Login", u"Show Dock Icon", u"Show Account Emails", u"Notifications",
                             u"Service and model news"};
    open();
    interval().setCurrentIndex(2);
    for (const auto* const name : switchedOn)
        toggle(name).click();
    toggle(u"Ranking Privacy").click();
    slider(u"Claude threshold").setValue(35);
    slider(u"Codex threshold").setValue(95);
    const Preferences wanted{.refreshMinutes = 15,
                             .launchAtLogin = true,
                             .showDockIcon = true,
                             .showAccountEmails = true,
                             .rankingPrivate = false,
                             .notificationsEnabled = true,
                             .claudeThreshold = 35,
                             .codexThreshold = 95,
                             .newsNotifications = true};
    EXPECT_EQ(stored().preferences(), wanted);

    open();
    EXPECT_EQ(interval().currentText(), QStringLiteral("15 minutes"));
    for (const auto* const name : switchedOn)
        EXPECT_TRUE(toggle(name).isChecked());
    EXPECT_FALSE(toggle(u"Ranking Privacy").isChecked());
    EXPECT_EQ(slider(u"Claude threshold").value(), 35);
    EXPECT_EQ(slider(u"Codex threshold").value(), 95);
}

TEST_F(SettingsControllerTest, launchAtLoginRegistersAndUnregisters)
{
    open();
    toggle(u"Launch at Login").click();
    EXPECT_EQ(std::pair(loginItem.registrations, loginItem.unregistrations), std::pair(1, 0));
    EXPECT_TRUE(toggle(u"Launch at Login").isChecked());
    EXPECT_TRUE(stored().preferences().launchAtLogin);
    toggle(u"Launch at Login").click();
    EXPECT_EQ(std::pair(loginItem.registrations, loginItem.unregistrations), std::pair(1, 1));
    EXPECT_FALSE(stored().preferences().launchAtLogin);
}

TEST_F(SettingsControllerTest, failedRegistrationRevertsTheToggleWithoutARetry)
{
    open();
    loginItem.refuses = true;
    toggle(u"Launch at Login").click();
    EXPECT_FALSE(toggle(u"Launch at Login").isChecked());
    EXPECT_FALSE(stored().preferences().launchAtLogin);
    EXPECT_EQ(std::pair(loginItem.registrations, loginItem.unregistrations), std::pair(1, 0));
}

TEST_F(SettingsControllerTest, failedUnregistrationRevertsTheToggle)
{
    loginItem.current = LoginItemStatus::enabled;
    open();
    loginItem.refuses = true;
    toggle(u"Launch at Login").click();
    EXPECT_TRUE(toggle(u"Launch at Login").isChecked());
    EXPECT_TRUE(stored().preferences().launchAtLogin);
}

TEST_F(SettingsControllerTest, generalTabShowsTheStateOfTheDesktopWheneverItAppears)
{
    for (const auto status :
         {LoginItemStatus::notRegistered, LoginItemStatus::requiresApproval, LoginItemStatus::notFound}) {
        loginItem.current = LoginItemStatus::enabled;
        open();
        EXPECT_TRUE(toggle(u"Launch at Login").isChecked());
        showTab(1);
        loginItem.current = status; // in the desktop's settings, meanwhile
        showTab(0);
        EXPECT_FALSE(toggle(u"Launch at Login").isChecked());
        EXPECT_FALSE(stored().preferences().launchAtLogin);
    }
    EXPECT_EQ(loginItem.registrations + loginItem.unregistrations, 0);
}

TEST_F(SettingsControllerTest, dockIconSetsThePolicyOnlyOnChange)
{
    ASSERT_TRUE(stored().set(&Preferences::showDockIcon, true));
    open();
    EXPECT_TRUE(toggle(u"Show Dock Icon").isChecked());
    EXPECT_TRUE(policy.policies.empty());
    toggle(u"Show Dock Icon").click();
    toggle(u"Show Dock Icon").click();
    EXPECT_EQ(policy.policies, (std::vector{ActivationPolicy::accessory, ActivationPolicy::regular}));
}

TEST_F(SettingsControllerTest, deniedNotificationsRevertTheToggle)
{
    open();
    toggle(u"Notifications").click();
    ASSERT_EQ(notifications.requests.size(), 1U);
    EXPECT_TRUE(notifications.lastOptions.alert);
    EXPECT_TRUE(notifications.lastOptions.sound);
    EXPECT_TRUE(stored().preferences().notificationsEnabled);
    notifications.requests[0](false);
    EXPECT_FALSE(toggle(u"Notifications").isChecked());
    EXPECT_FALSE(stored().preferences().notificationsEnabled);
    EXPECT_EQ(notifications.requests.size(), 1U);
}

TEST_F(SettingsControllerTest, grantedNotificationsStayOnAndAreRequestedAgainNextTime)
{
    open();
    toggle(u"Notifications").click();
    notifications.requests.at(0)(true);
    EXPECT_TRUE(toggle(u"Notifications").isChecked());
    toggle(u"Notifications").click();
    EXPECT_EQ(notifications.requests.size(), 1U);
    EXPECT_FALSE(stored().preferences().notificationsEnabled);
    toggle(u"Notifications").click();
    EXPECT_EQ(notifications.requests.size(), 2U);
}

TEST_F(SettingsControllerTest, denialAfterDestructionIsIgnored)
{
    open();
    toggle(u"Notifications").click();
    endController();
    notifications.requests.at(0)(false);
    EXPECT_TRUE(stored().preferences().notificationsEnabled);
}

TEST_F(SettingsControllerTest, valueThatCannotBeStoredStillApplies)
{
    writeFile(file().parent_path(), "a file where the folder should be");
    open();
    interval().setCurrentIndex(3);
    toggle(u"Ranking Privacy").click();
    toggle(u"Notifications").click();
    notifications.requests.at(0)(false); // updates the view with all values
    EXPECT_EQ(intervals, std::vector<qint64>{30});
    EXPECT_EQ(interval().currentText(), QStringLiteral("30 minutes"));
    EXPECT_FALSE(toggle(u"Ranking Privacy").isChecked());
    EXPECT_FALSE(toggle(u"Notifications").isChecked());
}

TEST_F(SettingsControllerTest, requestsOfTheAccountsTabAreForwarded)
{
    open();
    QStringList asked;
    QObject::connect(&controller(), &SettingsController::refreshRequested, &controller(),
                     [&] { asked << QStringLiteral("refresh"); });
    QObject::connect(&controller(), &SettingsController::homeAccessRequested, &controller(),
                     [&] { asked << QStringLiteral("access"); });
    for (PushButton* button : view().findChildren<PushButton*>())
        button->click();
    asked.sort();
    EXPECT_EQ(asked, (QStringList{QStringLiteral("access"), QStringLiteral("refresh")}));
}

} // namespace
} // namespace tallyfox::test
