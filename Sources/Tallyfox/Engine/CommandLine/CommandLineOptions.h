#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace tallyfox {

/// What the program reports to its parent process.
enum class ExitStatus : int {
    done = 0,
    failure = 1,
    wrongUsage = 2,
    noHomeFolder = 3, ///< a summary was printed, but no home folder has been granted
};

/// One option: what the parser accepts and the help shows.
struct CommandLineOption {
    enum class Meaning { toggle, settings, summary, json, home, noQuota, help, version };
    Meaning meaning = Meaning::help;
    std::string_view name; ///< with its dashes
    std::string_view argument; ///< its name in the help; empty for an option without an argument
    std::string_view description;
};

/// Every option of the program, in the order of the help.
std::span<const CommandLineOption> commandLineOptions();

struct HelpRequest { };
struct VersionRequest { };

/// One refresh, printed.
struct SummaryRequest {
    std::optional<std::filesystem::path> home; ///< as given: not checked yet
    bool fetchesQuota = true;
    bool isJson = false;

    friend bool operator==(const SummaryRequest&, const SummaryRequest&) = default;
};

/// What starting the agent's program asks of the agent.
enum class AgentAction {
    show, ///< start it, or open its popover if it is running
    toggle, ///< open or close the popover of the running agent
    settings, ///< start it if necessary, and open its settings
};

/// The agent in the status area.
struct AgentRequest {
    std::optional<std::filesystem::path> home{}; ///< as given: not checked yet
    bool fetchesQuota = true;
    AgentAction action = AgentAction::show;

    friend bool operator==(const AgentRequest&, const AgentRequest&) = default;
};

/// Why the arguments are rejected: one line for people, without control characters.
struct UsageError {
    std::string message;
};

using CommandLineRequest = std::variant<HelpRequest, VersionRequest, SummaryRequest, AgentRequest, UsageError>;

/// Parses the arguments (any bytes, without the program's name). Options may come in any order; the last of several
/// values of an option counts. With valid arguments, --help takes precedence over --version, and both over the rest.
CommandLineRequest parseCommandLine(std::span<const std::string_view> arguments);

/// The absolute path of the folder that `--home` names; nothing without the option; an error when it is not a folder.
std::variant<std::optional<std::filesystem::path>, UsageError>
checkHome(const std::optional<std::filesystem::path>& home);

/// The text of `--help`.
std::string helpText();

} // namespace tallyfox
