#pragma once

#include "Tallyfox/Agent/Settings/SettingsController.h"
#include "Tallyfox/Agent/Settings/SettingsView.h"

#include <QWidget>

namespace tallyfox {

/// The settings window: made once, then hidden and shown again with what was chosen in it.
class SettingsWindow : public QWidget {
    Q_OBJECT

public:
    /// The services must outlive the window. `version` is the program's.
    SettingsWindow(const QString& version, const SettingsServices& services);

    void setUsage(const UsageSnapshot& snapshot);

    /// What the user wants of the rest of the program.
    [[nodiscard]] const SettingsController& controller() const
    {
        return m_controller;
    }

    /// Shows it, in the middle of the screen at first, over the other windows and with the focus.
    void bringToFront();

private:
    SettingsView* m_view;
    SettingsController m_controller;
    bool m_isPlaced = false;
};

/// Lets a screen reader know the settings window as a window, and which of its tabs is chosen: the toolkit says
/// neither. Once per process, before the first window; more do no harm.
void installAccessibleSettings();

} // namespace tallyfox
