#pragma once

#include "Tallyfox/Engine/CommandLine/CommandLineOptions.h"

#include <string_view>

namespace tallyfox {

/// One run of the program from a terminal. For requests to the agent it replaces itself by the agent's program.
class CommandLineProgram {
public:
    /// Keeps references: both must outlive the object.
    CommandLineProgram(int& argc, char** argv);

    ExitStatus run();

private:
    ExitStatus runRequest(const HelpRequest& request);
    ExitStatus runRequest(const VersionRequest& request);
    ExitStatus runRequest(const SummaryRequest& request);
    ExitStatus runRequest(const AgentRequest& request);
    ExitStatus runRequest(const UsageError& error);

    int& m_argc;
    char** m_argv;
};

} // namespace tallyfox
