#pragma once

#include "Tallyfox/Agent/Settings/SettingsForm.h"
#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"

namespace tallyfox {

class Picker;
class PushButton;

/// The "General" tab: the refresh interval, start at login, the taskbar entry, and the appearance.
class GeneralSettingsView : public SettingsForm {
    Q_OBJECT

public:
    explicit GeneralSettingsView(QWidget* parent = nullptr);

    /// Shows `preferences`; emits nothing.
    void setPreferences(const Preferences& preferences);
    /// Where the shortcut is not in force, its row says what to do instead.
    void setShortcutState(ShortcutState state);

Q_SIGNALS:
    void appeared(); ///< the tab became visible, by itself or with the window
    void refreshMinutesChosen(qint64 minutes);
    void shortcutRequested();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void addUsage();
    void addAppAccess();
    void addShortcut(SettingsSection* section);
    void addAppearance();
    void showMinutes(std::int64_t minutes);

    Picker* m_refreshInterval;
    SettingsValue* m_shortcut = nullptr;
    PushButton* m_shortcutRequest = nullptr;
};

} // namespace tallyfox
