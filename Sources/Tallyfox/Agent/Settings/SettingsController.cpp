#include "Tallyfox/Agent/Settings/SettingsController.h"

#include "Tallyfox/Agent/Desktop/ActivationPolicy.h"
#include "Tallyfox/Agent/Desktop/LoginItem.h"
#include "Tallyfox/Agent/Desktop/NotificationCenter.h"
#include "Tallyfox/Agent/Settings/AccountSettingsView.h"
#include "Tallyfox/Agent/Settings/GeneralSettingsView.h"
#include "Tallyfox/Agent/Settings/NotificationSettingsView.h"
#include "Tallyfox/Agent/Settings/SettingsView.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"

#include <QPointer>

#include <utility>

namespace tallyfox {

namespace {

/// A value that could not be stored, on a full disk for example, still holds in the running program.
void useEvenIfNotStored(bool /*isStored*/) { }

} // namespace

SettingsController::SettingsController(SettingsView& view, SettingsServices services, QObject* parent)
    : QObject(parent)
    , m_view(view)
    , m_services(std::move(services))
    , m_preferences(m_services.userDefaults.preferences())
{
    m_view.setPreferences(m_preferences);
    bindGeneral();
    bindNotifications();
    bindAccounts();
}

void SettingsController::bindGeneral()
{
    const GeneralSettingsView& view = m_view.general();
    connect(&view, &GeneralSettingsView::appeared, this, &SettingsController::reconcileLaunchAtLogin);
    connect(&view, &GeneralSettingsView::refreshMinutesChosen, this, &SettingsController::setRefreshMinutes);
    connect(&view, &GeneralSettingsView::launchAtLoginToggled, this, &SettingsController::setLaunchAtLogin);
    connect(&view, &GeneralSettingsView::showDockIconToggled, this, &SettingsController::setShowDockIcon);
    connect(&view, &GeneralSettingsView::showAccountEmailsToggled, this, [this](bool isOn) {
        m_preferences.showAccountEmails = isOn;
        useEvenIfNotStored(m_services.userDefaults.setShowAccountEmails(isOn));
    });
    connect(&view, &GeneralSettingsView::rankingPrivateToggled, this, [this](bool isOn) {
        m_preferences.rankingPrivate = isOn;
        useEvenIfNotStored(m_services.userDefaults.setRankingPrivate(isOn));
    });
}

void SettingsController::bindNotifications()
{
    const NotificationSettingsView& view = m_view.notifications();
    connect(&view, &NotificationSettingsView::notificationsEnabledToggled, this,
            &SettingsController::setNotificationsEnabled);
    connect(&view, &NotificationSettingsView::thresholdChosen, this, [this](Provider provider, double percent) {
        const ProviderPresentation& presentation = presentationOf(provider);
        m_preferences.*presentation.threshold = percent;
        useEvenIfNotStored((m_services.userDefaults.*presentation.setThreshold)(percent));
    });
    connect(&view, &NotificationSettingsView::newsNotificationsToggled, this, [this](bool isOn) {
        m_preferences.newsNotifications = isOn;
        useEvenIfNotStored(m_services.userDefaults.setNewsNotifications(isOn));
    });
}

void SettingsController::bindAccounts()
{
    const AccountSettingsView& view = m_view.accounts();
    connect(&view, &AccountSettingsView::refreshRequested, this, &SettingsController::refreshRequested);
    connect(&view, &AccountSettingsView::homeAccessRequested, this, &SettingsController::homeAccessRequested);
}

void SettingsController::setRefreshMinutes(qint64 minutes)
{
    m_preferences.refreshMinutes = minutes;
    useEvenIfNotStored(m_services.userDefaults.setRefreshMinutes(minutes));
    Q_EMIT refreshIntervalChanged(minutes);
}

void SettingsController::setLaunchAtLogin(bool isOn)
{
    m_preferences.launchAtLogin = isOn;
    useEvenIfNotStored(m_services.userDefaults.setLaunchAtLogin(isOn));
    const bool isDone = isOn ? m_services.loginItem.registerItem() : m_services.loginItem.unregisterItem();
    if (!isDone)
        reconcileLaunchAtLogin();
}

/// The desktop has the last word. Where it agrees, nothing is written.
void SettingsController::reconcileLaunchAtLogin()
{
    const bool isEnabled = m_services.loginItem.status() == LoginItemStatus::enabled;
    if (isEnabled == m_preferences.launchAtLogin)
        return;
    m_preferences.launchAtLogin = isEnabled;
    useEvenIfNotStored(m_services.userDefaults.setLaunchAtLogin(isEnabled));
    m_view.setPreferences(m_preferences);
}

void SettingsController::setShowDockIcon(bool isOn)
{
    m_preferences.showDockIcon = isOn;
    useEvenIfNotStored(m_services.userDefaults.setShowDockIcon(isOn));
    m_services.activationPolicy.setPolicy(isOn ? ActivationPolicy::regular : ActivationPolicy::accessory);
}

void SettingsController::setNotificationsEnabled(bool isOn)
{
    m_preferences.notificationsEnabled = isOn;
    useEvenIfNotStored(m_services.userDefaults.setNotificationsEnabled(isOn));
    if (!isOn)
        return;
    m_services.notificationCenter.requestAuthorization({.alert = true, .sound = true},
                                                       [self = QPointer{this}](bool granted) {
                                                           if (self && !granted)
                                                               self->takeBackNotifications();
                                                       });
}

void SettingsController::takeBackNotifications()
{
    if (!m_preferences.notificationsEnabled)
        return;
    m_preferences.notificationsEnabled = false;
    useEvenIfNotStored(m_services.userDefaults.setNotificationsEnabled(false));
    m_view.setPreferences(m_preferences);
}

} // namespace tallyfox
