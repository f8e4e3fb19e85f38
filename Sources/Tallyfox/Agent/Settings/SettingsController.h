#pragma once

#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include <QObject>

namespace tallyfox {

class ActivationPolicySwitch;
class LoginItem;
class NotificationCenter;
class SettingsView;

/// What the settings act on. The references must outlive the controller.
struct SettingsServices {
    UserDefaults userDefaults;
    LoginItem& loginItem;
    NotificationCenter& notificationCenter;
    ActivationPolicySwitch& activationPolicy;
};

/// Binds the settings window to what it sets: each change is stored at once and acts at once. What cannot be stored
/// holds until the program ends. Main thread.
class SettingsController : public QObject {
    Q_OBJECT

public:
    /// Shows the stored values in `view`, which must outlive the controller.
    SettingsController(SettingsView& view, SettingsServices services, QObject* parent = nullptr);

Q_SIGNALS:
    void refreshIntervalChanged(qint64 minutes);
    void refreshRequested();
    void homeAccessRequested();

private:
    void bindGeneral();
    void bindNotifications();
    void bindAccounts();
    template <typename Value> void set(Value Preferences::*member, Value value);
    void setRefreshMinutes(qint64 minutes);
    void toggle(PreferenceFlag preference, bool isOn);
    void applyLaunchAtLogin(bool isOn);
    void reconcileLaunchAtLogin();
    void requestNotifications();
    void takeBackNotifications();

    SettingsView& m_view;
    SettingsServices m_services;
    Preferences m_preferences;
};

} // namespace tallyfox
