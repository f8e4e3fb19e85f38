#pragma once

#include "Tallyfox/Agent/KeepAwake/SleepInhibitor.h"
#include "Tallyfox/Agent/StatusItem/StatusNotifierWatch.h"

#include <memory>
#include <string_view>
#include <vector>

namespace tallyfox {

class GlobalShortcut;
class KdeShortcut;
class NotificationCenter;

enum class BusClientKind {
    powerManagement,
    sessionManager,
    portalInhibition,
    loginInhibition,
    portalRequest,
    sleepInhibitor,
    portalShortcut,
    statusNotifierWatch,
    notificationCenter,
    kdeShortcut,
};
inline constexpr std::size_t busClientKinds = 10;

/// One of the program's clients of bus services, and a count of what it has reported.
class BusClient {
public:
    BusClient(BusClientKind kind, const QDBusConnection& bus);
    ~BusClient();
    BusClient(const BusClient&) = delete;
    BusClient& operator=(const BusClient&) = delete;

    /// Destroys the client, but not its pending calls.
    void end();
    [[nodiscard]] bool isThere() const
    {
        return m_object || m_center;
    }
    [[nodiscard]] BusClientKind kind() const
    {
        return m_kind;
    }
    /// Whether it is a single request, which is granted or not.
    [[nodiscard]] bool isRequest() const
    {
        return m_kind <= BusClientKind::sleepInhibitor;
    }
    /// The service that a request depends on; empty with several.
    [[nodiscard]] std::string_view service() const;

    [[nodiscard]] int granted() const
    {
        return m_granted;
    }
    [[nodiscard]] int failed() const
    {
        return m_failed;
    }
    /// Of a shortcut.
    [[nodiscard]] bool isBound() const;
    [[nodiscard]] int activated() const
    {
        return m_activated;
    }
    /// Of a watch.
    [[nodiscard]] StatusNotifierHost host() const;
    /// Of a KDE shortcut.
    [[nodiscard]] bool isServed() const;
    /// Makes another request to a notification center, or for a portal's shortcut.
    void ask();
    [[nodiscard]] const std::vector<int>& completions() const
    {
        return m_completions;
    }

private:
    void make(const QDBusConnection& bus);
    void observe(GlobalShortcut& shortcut);
    template <typename Object> Object& keep(std::unique_ptr<Object> object);

    BusClientKind m_kind;
    QObject m_context; ///< of pending calls, which outlive the client
    std::unique_ptr<SleepInhibitor> m_inhibitor;
    std::unique_ptr<QObject> m_object;
    GlobalShortcut* m_shortcut = nullptr;
    KdeShortcut* m_kdeShortcut = nullptr;
    StatusNotifierWatch* m_watch = nullptr;
    std::unique_ptr<NotificationCenter> m_center;
    int m_granted = 0;
    int m_failed = 0;
    int m_activated = 0;
    StatusNotifierHost m_toldHost = StatusNotifierHost::unknown;
    std::vector<int> m_completions;
};

} // namespace tallyfox
