#pragma once

#include <chrono>
#include <functional>
#include <memory>

class QDBusConnection;

namespace tallyfox {

/// What notifications are allowed to do.
struct NotificationOptions {
    bool alert = false;
    bool sound = false;
};

/// Asks for permission to post notifications; this program posts none. Main thread.
class NotificationCenter {
public:
    /// Called once, on the main thread, after `requestAuthorization` has returned; not if the object is destroyed
    /// first.
    using Completion = std::function<void(bool granted)>;

    NotificationCenter() = default;
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;
    virtual ~NotificationCenter() = default;

    /// An error or a timeout counts as not granted.
    virtual void requestAuthorization(NotificationOptions options, Completion completion) = 0;
};

/// The notifications of the desktop on this session bus, connected or not. Granted means that there is a notification
/// service and that it answers within `timeout`: desktops ask the user nothing, and decide by their own settings what
/// to show of an alert and its sound. A service that is not running is started by the bus.
std::unique_ptr<NotificationCenter> makeNotificationCenter(const QDBusConnection& bus,
                                                           std::chrono::milliseconds timeout = std::chrono::seconds{5});

} // namespace tallyfox
