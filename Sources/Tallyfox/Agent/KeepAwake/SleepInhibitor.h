#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace tallyfox {

/// One request to keep the computer from idle sleep, in force from `began` until `ended` or its destruction. The
/// display may still sleep, and sleep that the user asks for is not held off. Main thread.
class SleepInhibition : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    void began(); ///< at most once, from the event loop
    /// At most once: every service refused, or the one that had granted the request is gone. The receiver may delete
    /// the object.
    void ended();
};

/// Keeps the computer awake. Must outlive the inhibitions it has begun.
class SleepInhibitor {
public:
    SleepInhibitor() = default;
    SleepInhibitor(const SleepInhibitor&) = delete;
    SleepInhibitor& operator=(const SleepInhibitor&) = delete;
    virtual ~SleepInhibitor() = default;

    /// Does not block; never null. `reason` is what the desktop may show the user.
    virtual std::unique_ptr<SleepInhibition> begin(const QString& reason) = 0;
};

/// The inhibitor of this desktop: its power management, session manager or portal, or the system's login manager,
/// whichever grants a request first. Each is given 2 seconds before the next is asked.
std::unique_ptr<SleepInhibitor> makeSleepInhibitor();

using BusSource = std::function<QDBusConnection()>;

/// The same on other buses and with another timeout for each service. The buses are connected to when a request first
/// needs them: most desktops never need the system bus.
std::unique_ptr<SleepInhibitor> makeSleepInhibitor(BusSource sessionBus, BusSource systemBus,
                                                   std::chrono::milliseconds timeout);

} // namespace tallyfox
