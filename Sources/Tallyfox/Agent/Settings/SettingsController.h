#pragma once

#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include <QObject>

namespace tallyfox {

class ActivationPolicySwitch;
class GlobalShortcut;
class LoginItem;
class NotificationCenter;
class SettingsView;

/// What the settings affect. The references must outlive the controller.
struct SettingsServices {
    UserDefaults userDefaults;
    LoginItem& loginItem;
    NotificationCenter& notificationCenter;
    ActivationPolicySwitch& activationPolicy;
    GlobalShortcut& shortcut;
};

/// Connects the settings window to what it controls: each change is stored and applied at once. A value that cannot
/// be stored applies until the program ends. Main thread.
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
    void connectGeneral();
    void connectShortcut();
    void connectNotifications();
    void connectAccounts();
    template <typename Value> void set(Value Preferences::*member, Value value);
    void setRefreshMinutes(qint64 minutes);
    void toggle(PreferenceFlag preference, bool isOn);
    void applyLaunchAtLogin(bool isOn);
    void reconcileLaunchAtLogin();
    void requestNotifications();
    void revertNotifications();

    SettingsView& m_view;
    SettingsServices m_services;
    Preferences m_preferences;
};

} // namespace tallyfox
