#pragma once

#include <filesystem>
#include <system_error>

namespace tallyfox::AgentProgram {

/// Replaces this process by the agent's program, with the same arguments: it needs the toolkit, which the terminal's
/// commands should not wait for. Returns only on failure, with its reason.
std::error_code replaceThisProcess(char** argv);

/// The command that people start, from within the agent: the absolute path of `tallyfox`.
std::filesystem::path command();

} // namespace tallyfox::AgentProgram
