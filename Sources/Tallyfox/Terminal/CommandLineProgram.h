#pragma once

#include "Tallyfox/Engine/CommandLine/CommandLineOptions.h"
#include "Tallyfox/Engine/CommandLine/ExitStatus.h"

#include <string_view>

namespace tallyfox {

/// One run of the program from a terminal. What is asked of the agent, the agent's own program does.
class CommandLineProgram {
public:
    /// Keeps references: both must outlive the object.
    CommandLineProgram(int& argc, char** argv);

    ExitStatus run();

private:
    ExitStatus perform(const HelpRequest& request);
    ExitStatus perform(const VersionRequest& request);
    ExitStatus perform(const SummaryRequest& request);
    ExitStatus perform(const AgentRequest& request);
    ExitStatus perform(const UsageError& error);

    int& m_argc;
    char** m_argv;
};

} // namespace tallyfox
