#pragma once

#include "Tallyfox/Engine/CommandLine/CommandLineOptions.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

namespace tallyfox {

/// The one agent of a desktop session: known on the session bus by its name, or, without a session bus, by a lock and
/// a socket in the user's runtime folder. Main thread.
///
/// When the session bus goes, the name goes with it: the agent runs on, unknown to later starts, of which the first
/// becomes an agent of its own. The program does not come back to a bus that is started anew.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Claim {
        first, ///< this process is the agent now and will be told of requests
        other, ///< another process is
        impossible, ///< neither bus nor runtime folder: several agents may run
    };

    using QObject::QObject;

    /// Tries to become the agent, for as long as the object lives. At most once. Takes a moment, and 3 s at most with a
    /// bus that does not answer.
    virtual Claim claim() = 0;
    /// Forwards an action to the process that is the agent; whether it arrived. Blocks until then, and for `timeout` at
    /// most: only for processes that do nothing else.
    virtual bool send(AgentAction action, std::chrono::milliseconds timeout = std::chrono::seconds{2}) = 0;

Q_SIGNALS:
    /// Another process asks this one, the agent. The other has its answer already, however long the slots take.
    void requested(AgentAction action);
};

/// The name of an action between two processes.
const char* nameOf(AgentAction action);
/// Nothing for a name that no action has.
std::optional<AgentAction> actionNamed(const QByteArray& name);

/// `id` is the application's, "org.tallyfox.tallyfox".
std::unique_ptr<SingleInstance> makeSingleInstance(const QString& id);

} // namespace tallyfox
