#pragma once

#include "Tallyfox/Engine/Preferences/UserDefaults.h"
#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <QWidget>

class QStackedWidget;

namespace tallyfox {

class AccountSettingsView;
class GeneralSettingsView;
class NotificationSettingsView;
class SettingsTabBar;

/// The content of the settings window: a tab bar, and the form of the selected tab. The tab stays selected when the
/// window is closed.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    /// `version` is the program's, for the "About" tab.
    explicit SettingsView(const QString& version, QWidget* parent = nullptr);

    void setPreferences(const Preferences& preferences);
    void setUsage(const UsageSnapshot& snapshot);

    /// The tabs that emit what the user changes.
    [[nodiscard]] GeneralSettingsView& general() const;
    [[nodiscard]] AccountSettingsView& accounts() const;
    [[nodiscard]] NotificationSettingsView& notifications() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void addTabs(const QString& version);

    SettingsTabBar* m_tabs;
    QStackedWidget* m_forms;
    GeneralSettingsView* m_general;
    AccountSettingsView* m_accounts;
    NotificationSettingsView* m_notifications;
};

} // namespace tallyfox
