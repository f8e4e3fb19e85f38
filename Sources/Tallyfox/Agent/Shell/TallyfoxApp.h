#pragma once

#include "Tallyfox/Engine/CommandLine/CommandLineOptions.h"

#include <QByteArray>

#include <filesystem>
#include <optional>

namespace tallyfox {

class SingleInstance;

/// One run of the agent's program: creates the parts of the application and runs it until the desktop or a signal ends
/// it. Returns early without a display, and when an agent is already running.
class TallyfoxApp {
public:
    /// Keeps references: both must outlive the object.
    TallyfoxApp(int& argc, char** argv);

    ExitStatus run();

private:
    ExitStatus runRequest(const AgentRequest& request);
    /// Needs a bus or a socket, but no display. When nobody gets the action, `problem` is reported.
    ExitStatus forwardToRunningAgent(AgentAction action, const char* problem);
    ExitStatus start(const AgentRequest& request, const std::optional<std::filesystem::path>& home);
    void runAgent(const AgentRequest& request, const std::optional<std::filesystem::path>& home,
                  SingleInstance& instance);

    int& m_argc;
    char** m_argv;
    QByteArray m_activationToken; ///< what the desktop has started this process with
};

} // namespace tallyfox
