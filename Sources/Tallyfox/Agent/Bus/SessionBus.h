#pragma once

#include <QByteArray>
#include <QDBusConnection>

#include <chrono>

namespace tallyfox {

/// Finds out whether this session has a bus that answers; if not, makes this process and its children run without one.
/// Must be called before the application object is made: Qt connects to the bus for screen readers, and would wait for
/// a silent one for ever. Blocks for 2 seconds at most.
///
/// Returns whether `name` has an owner there, which nothing else can tell without an application object. False also
/// for a bus that is not a local socket: only Qt connects to those.
bool chooseSessionBus(const QByteArray& name);

/// This process's connection to the bus; not connected when the bus does not answer within `timeout`. Blocks as long:
/// Qt's own connection attempt waits 25 seconds for a silent bus. A session bus that is not running is not started.
QDBusConnection answeringSessionBus(std::chrono::milliseconds timeout);
QDBusConnection answeringSystemBus(std::chrono::milliseconds timeout);

} // namespace tallyfox
