#pragma once

#include "Tallyfox/Agent/KeepAwake/CaffeineController.h"
#include "Tallyfox/Agent/KeepAwake/SleepInhibitor.h"
#include "Tallyfox/Agent/Shell/PopoverWindow.h"
#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"
#include "Tallyfox/Agent/StatusItem/StatusItem.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"
#include "Tallyfox/Engine/Store/UsageStore.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace tallyfox {

class ActivationPolicySwitch;
class LoginItem;
class NotificationCenter;
class SettingsWindow;

/// What the agent uses of the desktop.
struct AppDelegateEnvironment {
    StoreEnvironment store{};
    std::unique_ptr<SleepInhibitor> sleepInhibitor{};
    std::function<std::unique_ptr<StatusItem>()> makeStatusItem{};
    std::function<std::unique_ptr<GlobalShortcut>()> registerGlobalShortcut{};
    std::unique_ptr<LoginItem> loginItem{};
    std::unique_ptr<NotificationCenter> notificationCenter{};
    std::unique_ptr<ActivationPolicySwitch> activationPolicy{};
    UserDefaults userDefaults{std::filesystem::path{}};
};

/// The agent: owns the one store and the keep-awake switch, and wires them to the status item, the popover, the
/// settings window and the shortcut. Main thread.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    /// `version` is shown in the settings.
    AppDelegate(AppDelegateEnvironment environment, QString version, QObject* parent = nullptr);
    ~AppDelegate() override;

    /// Creates the parts of the agent and starts the first refresh. Must be called once.
    void applicationDidFinishLaunching();

    /// Closes the popover, or opens it where the status item was last clicked.
    void togglePopover();
    /// Opens it unless it is open.
    void showPopover();
    /// Opens the settings window, or brings it to the front.
    void showSettings();
    void closePopover();
    /// The token that the desktop has sent with a user's action: for the next window that is opened. Any bytes.
    void setActivationToken(const QByteArray& token);

    /// Nothing before the launch has finished.
    [[nodiscard]] std::optional<std::chrono::seconds> refreshInterval() const
    {
        return m_store.refreshInterval();
    }

Q_SIGNALS:
    void statusItemSettled(); ///< it is shown, or it has been reported that nothing shows it; may be repeated

private:
    void configureStatusItem();
    void configurePopover();
    void registerGlobalShortcut();
    void updateMenu();
    void handleChoice(StatusMenuAction action);
    void activateStatusItem(std::optional<QPoint> click);
    void openPopover();
    void createSettingsWindow();
    void publishLater();
    void publish();
    [[nodiscard]] bool isSettingsVisible() const;

    AppDelegateEnvironment m_environment;
    QString m_version;
    UsageStore m_store;
    CaffeineController m_caffeine;
    PopoverWindow m_popover;
    std::unique_ptr<StatusItem> m_statusItem;
    std::unique_ptr<GlobalShortcut> m_hotKey;
    std::unique_ptr<SettingsWindow> m_settingsWindow;
    std::optional<QPoint> m_lastClick; ///< on the status item, where the place of the click is known
    QByteArray m_activationToken;
    QTimer m_publicationTimer;
};

} // namespace tallyfox
