#pragma once

#include "Tallyfox/Agent/KeepAwake/SleepInhibitor.h"

#include <QDBusConnection>
#include <QObject>

#include <chrono>
#include <functional>

namespace tallyfox {

/// Asks the services one after the other, each with a bound, until one grants.
class DesktopSleepInhibitor : public SleepInhibitor {
public:
    using BusSource = std::function<QDBusConnection()>;

    /// The buses are asked for when they are needed first in a request: most desktops never need the system's.
    DesktopSleepInhibitor(BusSource sessionBus, BusSource systemBus, std::chrono::milliseconds limit);

    std::unique_ptr<SleepInhibition> begin(const QString& reason) override;

private:
    BusSource m_sessionBus;
    BusSource m_systemBus;
    std::chrono::milliseconds m_limit; ///< for each service
    QObject m_keeper; ///< of calls whose answers nobody waits for any more
};

} // namespace tallyfox
