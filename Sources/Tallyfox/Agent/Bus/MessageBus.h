#pragma once

#include <QByteArray>
#include <QDBusConnection>

#include <chrono>

namespace tallyfox {

/// An address at which nobody can be reached.
inline constexpr const char* noBusAddress = "disabled:";

/// Where the session bus of this process is; empty when there is none. Never one that would first have to be started.
QByteArray sessionBusAddress();
QByteArray systemBusAddress();

/// Whether a bus lets this user in and answers within `limit`; blocks as long. Addresses that name no socket of the
/// local machine are taken on trust.
bool busAnswers(const QByteArray& address, std::chrono::milliseconds limit);

/// This process's connections, or one that is not connected when the bus does not answer within `limit`: Qt's own way
/// to a bus waits 25 seconds for a silent one.
QDBusConnection answeringSessionBus(std::chrono::milliseconds limit);
QDBusConnection answeringSystemBus(std::chrono::milliseconds limit);

} // namespace tallyfox
