#pragma once

#include "Tallyfox/Agent/Desktop/NotificationCenter.h"

#include <QDBusConnection>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <vector>

namespace tallyfox {

/// Permission here means that there is a notification service and that it answers: the desktop asks the user nothing,
/// and what it then shows of an alert and its sound is for its own settings to say. A service that is not running is
/// started by the bus.
class BusNotificationCenter : public QObject, public NotificationCenter {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds patience{5000}; ///< for a service, and for the start of one

    explicit BusNotificationCenter(QDBusConnection bus, std::chrono::milliseconds longestWait = patience);

    void requestAuthorization(NotificationOptions options, Completion completion) override;

private:
    void refuseWithoutBus();

    QDBusConnection m_bus;
    std::chrono::milliseconds m_longestWait;
    std::vector<Completion> m_withoutBus; ///< who asked in vain and has not been told yet
    QTimer m_refusal;
};

} // namespace tallyfox
