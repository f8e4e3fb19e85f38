#pragma once

#include "Tallyfox/Agent/Settings/SettingsForm.h"
#include "Tallyfox/Engine/Preferences/Preferences.h"

namespace tallyfox {

class ThresholdControl;
class ToggleSwitch;

/// The "Notifications" tab: whether the user wants to be told, and from which remaining usage on.
class NotificationSettingsView : public SettingsForm {
    Q_OBJECT

public:
    explicit NotificationSettingsView(QWidget* parent = nullptr);

    /// Shows `preferences`; emits nothing.
    void setPreferences(const Preferences& preferences);

Q_SIGNALS:
    void notificationsEnabledToggled(bool isOn);
    void claudeThresholdChosen(double percent);
    void codexThresholdChosen(double percent);
    void newsNotificationsToggled(bool isOn);

private:
    void addUsageAlerts();
    void addUpdates();

    ToggleSwitch* m_notificationsEnabled;
    ThresholdControl* m_claudeThreshold;
    ThresholdControl* m_codexThreshold;
    ToggleSwitch* m_newsNotifications;
};

} // namespace tallyfox
