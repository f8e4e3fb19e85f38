#pragma once

#include "Tallyfox/Agent/Settings/SettingsForm.h"

namespace tallyfox {

class Picker;

/// The "General" tab: the refresh interval, start at login, the taskbar entry, and the appearance.
class GeneralSettingsView : public SettingsForm {
    Q_OBJECT

public:
    explicit GeneralSettingsView(QWidget* parent = nullptr);

    /// Shows `preferences`; emits nothing.
    void setPreferences(const Preferences& preferences);

Q_SIGNALS:
    void appeared(); ///< the tab became visible, by itself or with the window
    void refreshMinutesChosen(qint64 minutes);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void addUsage();
    void addAppAccess();
    void addAppearance();
    void showMinutes(std::int64_t minutes);

    Picker* m_refreshInterval;
};

} // namespace tallyfox
