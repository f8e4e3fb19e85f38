#pragma once

#include "Tallyfox/Engine/CommandLine/CommandLineOptions.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

namespace tallyfox {

/// The one agent of a desktop session: known on the session bus by its name, or, without a session bus, by a lock and
/// a socket in the user's runtime folder. Main thread.
///
/// When the connection to the session bus is lost, so is the name: the agent keeps running, but the next start does not
/// find it and becomes a second agent. The program does not connect to a restarted bus.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Claim {
        first, ///< this process is the agent now; `requested` follows
        other, ///< another process is
        impossible, ///< neither bus nor runtime folder: several agents may run
    };

    using QObject::QObject;

    /// Tries to become the agent until the object is destroyed. Must be called once at most. Blocks for 3 s at most,
    /// with a bus that does not answer.
    virtual Claim claim() = 0;
    /// Forwards an action to the process that is the agent; returns whether it arrived. Blocks for `timeout` at most:
    /// only for processes that do nothing else.
    ///
    /// `activationToken` is what the desktop started this process with, if anything, for the window that the action
    /// opens. It is only a help, and gets lost where the session has no bus.
    virtual bool send(AgentAction action, const QByteArray& activationToken = {},
                      std::chrono::milliseconds timeout = std::chrono::seconds{2}) = 0;

Q_SIGNALS:
    /// Another process has forwarded an action to this one. It has its reply already, so slots may take long. The
    /// activation token may be any bytes.
    void requested(AgentAction action, const QByteArray& activationToken);
};

/// Whether another process is the agent, found out before there is an application object; also chooses the session bus
/// of this process. Blocks for 2 s at most. False is not certain: an agent may be starting.
bool findRunningAgent(const QString& id);

/// The name of an action in messages between processes.
const char* toName(AgentAction action);
/// The action of that name.
std::optional<AgentAction> findAction(const QByteArray& name);

/// `id` is the application's, "org.tallyfox.tallyfox".
std::unique_ptr<SingleInstance> makeSingleInstance(const QString& id);

} // namespace tallyfox
