#pragma once

#include "Tallyfox/Agent/Settings/SettingsForm.h"

namespace tallyfox {

class Picker;

/// The "General" tab: the refresh interval, how the program is started and listed, and how it looks.
class GeneralSettingsView : public SettingsForm {
    Q_OBJECT

public:
    explicit GeneralSettingsView(QWidget* parent = nullptr);

    /// Shows `preferences`; emits nothing.
    void setPreferences(const Preferences& preferences);

Q_SIGNALS:
    void appeared(); ///< the tab has been opened, or the window with the tab in it
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
