#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Controls/PushButton.h"
#include "Tallyfox/Agent/Controls/StepSlider.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Controls/ToggleSwitch.h"
#include "Tallyfox/Agent/Settings/AccountSettingsView.h"
#include "Tallyfox/Agent/Settings/GeneralSettingsView.h"
#include "Tallyfox/Agent/Settings/NotificationSettingsView.h"
#include "Tallyfox/Agent/Settings/SettingsView.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QComboBox>
#include <QLineEdit>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <tuple>

namespace tallyfox::test {
namespace {

/// The control with that accessible name or text.
template <typename Control> Control& named(const QWidget& view, const char16_t* name)
{
    const QString wanted = QString::fromUtf16(name);
    for (Control* each : view.findChildren<Control*>()) {
        if (each->accessibleName() == wanted || each->property("text").toString() == wanted)
            return *each;
    }
    throw std::out_of_range{wanted.toStdString()};
}

UsageSnapshot snapshot()
{
    UsageSnapshot result;
    result.states = {initialState(Provider::claude, distantPast, Calendar::utc()),
                     initialState(Provider::codex, distantPast, Calendar::utc())};
    return result;
}

TEST(GeneralSettingsView, showsTheDefaultsInitially)
{
    const GeneralSettingsView view;
    EXPECT_EQ(view.findChild<QComboBox*>()->currentText(), QStringLiteral("5 minutes"));
    EXPECT_FALSE(named<ToggleSwitch>(view, u"Launch at Login").isChecked());
    EXPECT_FALSE(named<ToggleSwitch>(view, u"Show Dock Icon").isChecked());
    EXPECT_FALSE(named<ToggleSwitch>(view, u"Show Account Emails").isChecked());
    EXPECT_TRUE(named<ToggleSwitch>(view, u"Ranking Privacy").isChecked());
}

TEST(GeneralSettingsView, thereAreFourIntervalsAndSelectingOneEmitsItsMinutes)
{
    GeneralSettingsView view;
    std::vector<qint64> minutes;
    QObject::connect(&view, &GeneralSettingsView::refreshMinutesChosen, &view,
                     [&](qint64 each) { minutes.push_back(each); });
    auto* const picker = view.findChild<QComboBox*>();
    QStringList labels;
    for (int index = 0; index < picker->count(); ++index)
        labels << picker->itemText(index);
    EXPECT_EQ(labels, textList({u"1 minute", u"5 minutes", u"15 minutes", u"30 minutes"}));
    for (const int index : {0, 1, 2, 3})
        picker->setCurrentIndex(index);
    EXPECT_EQ(minutes, (std::vector<qint64>{1, 5, 15, 30}));
}

TEST(GeneralSettingsView, otherIntervalIsShownAsThePlaceholder)
{
    GeneralSettingsView view;
    QObject::connect(&view, &GeneralSettingsView::refreshMinutesChosen, &view, [](qint64) { ADD_FAILURE(); });
    view.setPreferences({.refreshMinutes = 7});
    EXPECT_EQ(view.findChild<QComboBox*>()->currentIndex(), -1);
    EXPECT_EQ(view.findChild<QComboBox*>()->placeholderText(), QStringLiteral("7 minutes"));
    view.setPreferences({.refreshMinutes = 30});
    EXPECT_EQ(view.findChild<QComboBox*>()->currentText(), QStringLiteral("30 minutes"));
}

TEST(GeneralSettingsView, eachToggleEmitsItsPreferenceAndSetPreferencesEmitsNothing)
{
    GeneralSettingsView view;
    QStringList said;
    const std::pair<PreferenceFlag, const char16_t*> names[]{{&Preferences::launchAtLogin, u"login"},
                                                             {&Preferences::showDockIcon, u"dock"},
                                                             {&Preferences::showAccountEmails, u"emails"},
                                                             {&Preferences::rankingPrivate, u"private"}};
    QObject::connect(&view, &GeneralSettingsView::toggled, &view, [&](PreferenceFlag preference, bool isOn) {
        const auto* const name = std::find_if(std::begin(names), std::end(names),
                                              [&](const auto& each) { return each.first == preference; });
        ASSERT_NE(name, std::end(names));
        said << QString::fromUtf16(name->second) + (isOn ? QStringLiteral(" on") : QStringLiteral(" off"));
    });
    view.setPreferences({.launchAtLogin = true, .showDockIcon = true, .showAccountEmails = true});
    EXPECT_EQ(said, QStringList{});
    for (const auto* const name : {u"Launch at Login", u"Show Dock Icon", u"Show Account Emails", u"Ranking Privacy"})
        named<ToggleSwitch>(view, name).click();
    EXPECT_EQ(said, textList({u"login off", u"dock off", u"emails off", u"private off"}));
}

TEST(NotificationSettingsView, showsTheDefaultsInitially)
{
    const NotificationSettingsView view;
    EXPECT_FALSE(named<ToggleSwitch>(view, u"Notifications").isChecked());
    EXPECT_FALSE(named<ToggleSwitch>(view, u"Service and model news").isChecked());
    for (const StepSlider* slider : view.findChildren<StepSlider*>()) {
        EXPECT_EQ(slider->value(), 20);
        EXPECT_EQ(slider->parentWidget()->findChild<TextLabel*>()->text(), QStringLiteral("20%"));
    }
}

TEST(NotificationSettingsView, slidersAreTwoHundredAndFortyWideAndTheirValuesThirtyEight)
{
    const NotificationSettingsView view;
    const auto sliders = view.findChildren<StepSlider*>();
    ASSERT_EQ(sliders.size(), 2);
    for (const StepSlider* slider : sliders) {
        EXPECT_EQ(slider->minimumWidth(), 240);
        EXPECT_EQ(slider->maximumWidth(), 240);
        const TextLabel* const text = slider->parentWidget()->findChild<TextLabel*>();
        EXPECT_EQ(text->minimumWidth(), 38);
        EXPECT_EQ(text->maximumWidth(), 38);
        EXPECT_EQ(slider->minimum(), 5);
        EXPECT_EQ(slider->maximum(), 95);
    }
}

TEST(NotificationSettingsView, movedSliderShowsAndEmitsItsPercentage)
{
    NotificationSettingsView view;
    std::map<Provider, std::vector<double>> chosen;
    QObject::connect(&view, &NotificationSettingsView::thresholdChosen, &view,
                     [&](Provider provider, double percent) { chosen[provider].push_back(percent); });
    auto& slider = named<StepSlider>(view, u"Claude threshold");
    const auto* const text = slider.parentWidget()->findChild<TextLabel*>();
    slider.setValue(5);
    EXPECT_EQ(text->text(), QStringLiteral("5%"));
    slider.setValue(95);
    EXPECT_EQ(text->text(), QStringLiteral("95%"));
    EXPECT_EQ(slider.accessibleDescription(), QStringLiteral("95%"));
    EXPECT_EQ(chosen, (std::map<Provider, std::vector<double>>{{Provider::claude, {5, 95}}}));
    named<StepSlider>(view, u"Codex threshold").setValue(30);
    EXPECT_EQ(chosen[Provider::codex], std::vector<double>{30});
}

TEST(NotificationSettingsView, slidersStayEnabledWithoutNotifications)
{
    NotificationSettingsView view;
    for (const bool isOn : {true, false}) {
        view.setPreferences({.notificationsEnabled = isOn});
        for (const StepSlider* slider : view.findChildren<StepSlider*>())
            EXPECT_TRUE(slider->isEnabled());
    }
}

TEST(ThresholdText, percentageIsTruncated)
{
    const std::pair<double, const char16_t*> cases[]{
        {20, u"20%"}, {5, u"5%"}, {95, u"95%"}, {22.5, u"22%"}, {22.99, u"22%"}};
    for (const auto& [percent, text] : cases)
        EXPECT_EQ(thresholdText(percent), QString::fromUtf16(text));
}

TEST(AccountSettingsView, rowsShowEachHealthWithItsTextAndColour)
{
    const std::tuple<SourceHealth, const char16_t*, QColor> cases[]{
        {SourceHealth::connected, u"Connected", Theme::success()},
        {SourceHealth::localOnly, u"Local history", Theme::claude()},
        {SourceHealth::stale, u"Stale", Theme::claude()},
        {SourceHealth::permissionRequired, u"Permission", Theme::warning()},
        {SourceHealth::unavailable, u"Unavailable", Theme::muted()},
    };
    AccountSettingsView view;
    for (const auto& [health, text, color] : cases) {
        UsageSnapshot shown = snapshot();
        for (ProviderState& state : shown.states)
            state.health = health;
        view.setUsage(shown);
        EXPECT_EQ(named<TextLabel>(view, text).color(), color);
    }
}

TEST(AccountSettingsView, rowsAreReused)
{
    AccountSettingsView view;
    view.setUsage(snapshot());
    const auto before = view.findChildren<QWidget*>();
    UsageSnapshot next = snapshot();
    next.states[0].health = SourceHealth::connected;
    next.states[0].detail = "Official usage API";
    view.setUsage(next);
    EXPECT_EQ(view.findChildren<QWidget*>(), before);
    EXPECT_NO_THROW(named<TextLabel>(view, u"Official usage API"));
}

TEST(AccountSettingsView, buttonsEmitRequests)
{
    AccountSettingsView view;
    int refreshes = 0;
    int grants = 0;
    QObject::connect(&view, &AccountSettingsView::refreshRequested, &view, [&] { ++refreshes; });
    QObject::connect(&view, &AccountSettingsView::homeAccessRequested, &view, [&] { ++grants; });
    named<PushButton>(view, u"Sync Accounts").click();
    EXPECT_EQ(std::pair(refreshes, grants), std::pair(1, 0));
    named<PushButton>(view, u"Allow Home Folder Access").click();
    EXPECT_EQ(std::pair(refreshes, grants), std::pair(1, 1));
}

TEST(AccountSettingsView, grantedAccessHidesTheButton)
{
    AccountSettingsView view;
    UsageSnapshot shown = snapshot();
    shown.hasHomeAccess = true;
    view.setUsage(shown);
    view.show();
    const auto& grant = named<PushButton>(view, u"Allow Home Folder Access");
    EXPECT_EQ(accessibleName(named<TextLabel>(view, u"Allowed")), QStringLiteral("Home directory access: Allowed"));
    EXPECT_FALSE(grant.isVisible());
    shown.hasHomeAccess = false;
    view.setUsage(shown);
    EXPECT_EQ(accessibleName(named<TextLabel>(view, u"Required")), QStringLiteral("Home directory access: Required"));
    EXPECT_TRUE(grant.isVisible());
}

TEST(AccountSettingsView, syncIsDisabledDuringARefreshAndRegainsTheFocus)
{
    AccountSettingsView view;
    UsageSnapshot shown = snapshot();
    view.setUsage(shown);
    showActive(view);
    auto& sync = named<PushButton>(view, u"Sync Accounts");
    sync.setFocus();
    shown.isRefreshing = true;
    view.setUsage(shown);
    EXPECT_FALSE(sync.isEnabled());
    EXPECT_FALSE(sync.hasFocus());
    shown.isRefreshing = false;
    view.setUsage(shown);
    EXPECT_TRUE(sync.isEnabled());
    EXPECT_TRUE(sync.hasFocus());
}

TEST(AccountSettingsView, focusMovedDuringARefreshIsKept)
{
    QWidget window;
    AccountSettingsView view{&window};
    QLineEdit other{&window};
    UsageSnapshot shown = snapshot();
    view.setUsage(shown);
    showActive(window);
    named<PushButton>(view, u"Sync Accounts").setFocus();
    shown.isRefreshing = true;
    view.setUsage(shown);
    named<PushButton>(view, u"Allow Home Folder Access").setFocus();
    other.setFocus();
    shown.isRefreshing = false;
    view.setUsage(shown);
    EXPECT_TRUE(other.hasFocus());
}

TEST(AboutSettingsView, missingVersionIsShownAsTheFirst)
{
    const SettingsView view{QString{}};
    EXPECT_NO_THROW(named<TextLabel>(view, u"Version 0.1.0"));
}

} // namespace
} // namespace tallyfox::test
