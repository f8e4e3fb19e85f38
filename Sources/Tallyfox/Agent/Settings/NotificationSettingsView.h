#pragma once

#include "Tallyfox/Agent/Settings/SettingsForm.h"
#include "TallyfoxCore/Usage/Provider.h"

#include <array>

namespace tallyfox {

class ThresholdControl;

/// The "Notifications" tab: whether the user wants to be told, and from which remaining usage on.
class NotificationSettingsView : public SettingsForm {
    Q_OBJECT

public:
    explicit NotificationSettingsView(QWidget* parent = nullptr);

    /// Shows `preferences`; emits nothing.
    void setPreferences(const Preferences& preferences);

Q_SIGNALS:
    void thresholdChosen(tallyfox::Provider provider, double percent);

private:
    void addUsageAlerts();
    void addThreshold(SettingsSection& section, Provider provider);
    void addUpdates();

    std::array<ThresholdControl*, allProviders.size()> m_thresholds{}; ///< in the order of `allProviders`
};

} // namespace tallyfox
