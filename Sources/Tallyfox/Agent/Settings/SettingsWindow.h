#pragma once

#include "Tallyfox/Agent/Settings/SettingsController.h"
#include "Tallyfox/Agent/Settings/SettingsView.h"

#include <QWidget>

namespace tallyfox {

/// The settings window: created once, then hidden and shown again with its state.
class SettingsWindow : public QWidget {
    Q_OBJECT

public:
    /// The services must outlive the window. `version` is the program's.
    SettingsWindow(const QString& version, const SettingsServices& services);

    void setUsage(const UsageSnapshot& snapshot);

    /// Emits what the user requests from the rest of the program.
    [[nodiscard]] const SettingsController& controller() const
    {
        return m_controller;
    }

    /// Shows, raises and activates the window, centred on the pointer's screen the first time. `activationToken` is
    /// what the desktop sent with the user's action, if anything.
    void bringToFront(const QByteArray& activationToken);

private:
    SettingsView* m_view;
    SettingsController m_controller;
    bool m_isPlaced = false;
};

/// Installs the accessible interfaces of the settings window and its tab bar: Qt's own expose neither the window's
/// role nor the selected tab. Call once, before the first window; further calls are harmless.
void installAccessibleSettings();

} // namespace tallyfox
