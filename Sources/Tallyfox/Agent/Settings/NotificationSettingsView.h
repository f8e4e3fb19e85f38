#pragma once

#include "Tallyfox/Agent/Settings/SettingsForm.h"
#include "TallyfoxCore/Usage/Provider.h"

#include <QWidget>

#include <array>

namespace tallyfox {

class StepSlider;
class TextLabel;

/// The text of a threshold: "20%" for 20, "22%" for 22.5.
QString thresholdText(double percent);

/// A slider for a percentage of remaining usage, with its value beside it.
class ThresholdControl : public QWidget {
    Q_OBJECT

public:
    explicit ThresholdControl(const QString& name, QWidget* parent = nullptr);

    /// Shows `percent`; emits nothing.
    void setPercent(double percent);

Q_SIGNALS:
    void chosen(double percent);

private:
    void choose(int percent);
    void showText(double percent);

    StepSlider* m_slider;
    TextLabel* m_text;
};

/// The "Notifications" tab: which notifications the user wants, and below which remaining usage.
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
