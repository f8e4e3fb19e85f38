#pragma once

#include "Support/ScratchFolder.h"
#include "Tallyfox/Agent/Desktop/ActivationPolicy.h"
#include "Tallyfox/Agent/Desktop/LoginItem.h"
#include "Tallyfox/Agent/Desktop/NotificationCenter.h"
#include "Tallyfox/Agent/Shell/AppDelegate.h"

#include <QPointer>

#include <memory>
#include <string>
#include <vector>

namespace tallyfox::test {

class FakeStatusItem : public StatusItem {
public:
    void setContent(const StatusItemContent& content) override
    {
        contents.push_back(content);
    }
    void setMenu(const StatusMenuContent& content) override
    {
        menu = content;
        ++menuChanges;
    }

    std::vector<StatusItemContent> contents;
    StatusMenuContent menu; ///< the latest
    int menuChanges = 0;
};

class FakeSleepInhibitor : public SleepInhibitor {
public:
    std::unique_ptr<SleepInhibition> begin(const QString& reason) override
    {
        reasons.push_back(reason);
        auto result = std::make_unique<SleepInhibition>();
        inhibition = result.get();
        return result;
    }

    std::vector<QString> reasons;
    QPointer<SleepInhibition> inhibition; ///< the newest one, while it exists
};

/// Registers the program unless it refuses.
class FakeLoginItem : public LoginItem {
public:
    bool registerItem() override
    {
        ++registrations;
        if (!refuses)
            current = LoginItemStatus::enabled;
        return !refuses;
    }
    bool unregisterItem() override
    {
        ++unregistrations;
        if (!refuses)
            current = LoginItemStatus::notRegistered;
        return !refuses;
    }
    [[nodiscard]] LoginItemStatus status() const override
    {
        return current;
    }

    LoginItemStatus current = LoginItemStatus::notRegistered;
    bool refuses = false;
    int registrations = 0;
    int unregistrations = 0;
};

/// Keeps the completions for the test to call.
class FakeNotificationCenter : public NotificationCenter {
public:
    void requestAuthorization(NotificationOptions options, Completion completion) override
    {
        lastOptions = options;
        requests.push_back(std::move(completion));
    }

    NotificationOptions lastOptions;
    std::vector<Completion> requests;
};

class FakeActivationPolicySwitch : public ActivationPolicySwitch {
public:
    void addWindow(QWidget& /*window*/) override { }
    void setPolicy(ActivationPolicy policy) override
    {
        policies.push_back(policy);
    }

    std::vector<ActivationPolicy> policies;
};

class FakeShortcut : public GlobalShortcut {
public:
    using GlobalShortcut::setState;
    void check() override
    {
        ++checks;
    }
    void request() override
    {
        ++requests;
    }

    int checks = 0;
    int requests = 0;
};

/// A desktop that records what the agent asks of it. The pointers are valid as long as the agent exists.
class FakeDesktop {
public:
    AppDelegateEnvironment environment(const StoreEnvironment& store)
    {
        AppDelegateEnvironment result;
        result.store = store;
        auto sleepInhibitor = std::make_unique<FakeSleepInhibitor>();
        inhibitor = sleepInhibitor.get();
        result.sleepInhibitor = std::move(sleepInhibitor);
        result.makeStatusItem = [this] {
            events.emplace_back("status item");
            auto item = std::make_unique<FakeStatusItem>();
            statusItem = item.get();
            return item;
        };
        result.registerGlobalShortcut = [this] {
            events.emplace_back("shortcut");
            auto made = std::make_unique<FakeShortcut>();
            shortcut = made.get();
            return made;
        };
        result.loginItem = std::make_unique<FakeLoginItem>();
        result.notificationCenter = std::make_unique<FakeNotificationCenter>();
        result.activationPolicy = std::make_unique<FakeActivationPolicySwitch>();
        result.userDefaults = UserDefaults{m_folder.path() / "tallyfox.ini"};
        return result;
    }

    std::vector<std::string> events; ///< in order
    FakeStatusItem* statusItem = nullptr;
    FakeShortcut* shortcut = nullptr;
    FakeSleepInhibitor* inhibitor = nullptr;

private:
    ScratchFolder m_folder;
};

} // namespace tallyfox::test
