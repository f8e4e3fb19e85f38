#pragma once

#include "Tallyfox/Agent/KeepAwake/SleepInhibitor.h"
#include "Tallyfox/Agent/StatusItem/StatusNotifierWatch.h"

#include <memory>
#include <string_view>
#include <vector>

namespace tallyfox {

class NotificationCenter;
class PortalShortcut;

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
};
inline constexpr std::size_t busClientKinds = 9;

/// One of the program's clients of services on the bus, and how often it has told what.
class BusClient {
public:
    BusClient(BusClientKind kind, const QDBusConnection& bus);
    ~BusClient();
    BusClient(const BusClient&) = delete;
    BusClient& operator=(const BusClient&) = delete;

    /// Ends the client, not the calls that it has left under way.
    void end();
    [[nodiscard]] bool isThere() const
    {
        return m_object || m_center;
    }
    [[nodiscard]] BusClientKind kind() const
    {
        return m_kind;
    }
    /// Whether it asks for one thing, which it gets or not.
    [[nodiscard]] bool isRequest() const
    {
        return m_kind <= BusClientKind::sleepInhibitor;
    }
    /// The service on which a request depends; empty where there are several.
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
    /// Of a notification centre, which is asked here once more; -1 for the requests it has not answered yet.
    void ask();
    [[nodiscard]] const std::vector<int>& completions() const
    {
        return m_completions;
    }

private:
    void make(const QDBusConnection& bus);
    template <typename Object> Object& keep(std::unique_ptr<Object> object);

    BusClientKind m_kind;
    QObject m_context; ///< of pending calls, which outlive the client
    std::unique_ptr<SleepInhibitor> m_inhibitor;
    std::unique_ptr<QObject> m_object;
    PortalShortcut* m_shortcut = nullptr;
    StatusNotifierWatch* m_watch = nullptr;
    std::unique_ptr<NotificationCenter> m_center;
    int m_granted = 0;
    int m_failed = 0;
    int m_activated = 0;
    bool m_wasBound = false;
    StatusNotifierHost m_toldHost = StatusNotifierHost::unknown;
    std::vector<int> m_completions;
};

} // namespace tallyfox
