#include "Tallyfox/Agent/Settings/SettingsController.h"

#include "Tallyfox/Agent/Desktop/ActivationPolicy.h"
#include "Tallyfox/Agent/Desktop/LoginItem.h"
#include "Tallyfox/Agent/Desktop/NotificationCenter.h"
#include "Tallyfox/Agent/Settings/AccountSettingsView.h"
#include "Tallyfox/Agent/Settings/GeneralSettingsView.h"
#include "Tallyfox/Agent/Settings/NotificationSettingsView.h"
#include "Tallyfox/Agent/Settings/SettingsView.h"
#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"

#include <QPointer>

#include <utility>

namespace tallyfox {

namespace {

/// A value that cannot be stored, for example on a full disk, still applies until the program ends.
void ignoreStoreFailure(bool /*isStored*/) { }

} // namespace

SettingsController::SettingsController(SettingsView& view, SettingsServices services, QObject* parent)
    : QObject(parent)
    , m_view(view)
    , m_services(std::move(services))
    , m_preferences(m_services.userDefaults.preferences())
{
    m_view.setPreferences(m_preferences);
    connectGeneral();
    connectShortcut();
    connectNotifications();
    connectAccounts();
}

void SettingsController::connectGeneral()
{
    const GeneralSettingsView& view = m_view.general();
    connect(&view, &GeneralSettingsView::appeared, this, &SettingsController::reconcileLaunchAtLogin);
    connect(&view, &GeneralSettingsView::refreshMinutesChosen, this, &SettingsController::setRefreshMinutes);
    connect(&view, &GeneralSettingsView::toggled, this, &SettingsController::toggle);
}

void SettingsController::connectShortcut()
{
    GeneralSettingsView& view = m_view.general();
    GlobalShortcut& shortcut = m_services.shortcut;
    view.setShortcutState(shortcut.state());
    connect(&shortcut, &GlobalShortcut::stateChanged, &view, &GeneralSettingsView::setShortcutState);
    connect(&view, &GeneralSettingsView::appeared, &shortcut, &GlobalShortcut::check);
    connect(&view, &GeneralSettingsView::shortcutRequested, &shortcut, &GlobalShortcut::request);
}

void SettingsController::connectNotifications()
{
    const NotificationSettingsView& view = m_view.notifications();
    connect(&view, &NotificationSettingsView::toggled, this, &SettingsController::toggle);
    connect(&view, &NotificationSettingsView::thresholdChosen, this,
            [this](Provider provider, double percent) { set(presentationOf(provider).threshold, percent); });
}

void SettingsController::connectAccounts()
{
    const AccountSettingsView& view = m_view.accounts();
    connect(&view, &AccountSettingsView::refreshRequested, this, &SettingsController::refreshRequested);
    connect(&view, &AccountSettingsView::homeAccessRequested, this, &SettingsController::homeAccessRequested);
}

template <typename Value> void SettingsController::set(Value Preferences::*member, Value value)
{
    m_preferences.*member = value;
    ignoreStoreFailure(m_services.userDefaults.set(member, value));
}

void SettingsController::setRefreshMinutes(qint64 minutes)
{
    set(&Preferences::refreshMinutes, std::int64_t{minutes});
    Q_EMIT refreshIntervalChanged(minutes);
}

void SettingsController::toggle(PreferenceFlag preference, bool isOn)
{
    set(preference, isOn);
    if (preference == &Preferences::launchAtLogin)
        applyLaunchAtLogin(isOn);
    else if (preference == &Preferences::showDockIcon)
        m_services.activationPolicy.setPolicy(isOn ? ActivationPolicy::regular : ActivationPolicy::accessory);
    else if (preference == &Preferences::notificationsEnabled && isOn)
        requestNotifications();
}

void SettingsController::applyLaunchAtLogin(bool isOn)
{
    const bool isDone = isOn ? m_services.loginItem.registerItem() : m_services.loginItem.unregisterItem();
    if (!isDone)
        reconcileLaunchAtLogin();
}

/// The desktop's state wins. Writes nothing if the preference agrees with it.
void SettingsController::reconcileLaunchAtLogin()
{
    const bool isEnabled = m_services.loginItem.status() == LoginItemStatus::enabled;
    if (isEnabled == m_preferences.launchAtLogin)
        return;
    set(&Preferences::launchAtLogin, isEnabled);
    m_view.setPreferences(m_preferences);
}

void SettingsController::requestNotifications()
{
    m_services.notificationCenter.requestAuthorization({.alert = true, .sound = true},
                                                       [self = QPointer{this}](bool granted) {
                                                           if (self && !granted)
                                                               self->revertNotifications();
                                                       });
}

void SettingsController::revertNotifications()
{
    if (!m_preferences.notificationsEnabled)
        return;
    set(&Preferences::notificationsEnabled, false);
    m_view.setPreferences(m_preferences);
}

} // namespace tallyfox
