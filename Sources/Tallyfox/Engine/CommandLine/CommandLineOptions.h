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

/// One option, as the parser takes it and as the help shows it.
struct CommandLineOption {
    enum class Meaning { toggle, settings, summary, json, home, noQuota, help, version };
    Meaning meaning = Meaning::help;
    std::string_view name; ///< with its dashes
    std::string_view argument; ///< what the help calls its argument; empty for none
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

/// What a start of the agent's program wants from the agent that runs, or becomes.
enum class AgentAction {
    show, ///< start it; its popover when it runs already
    toggle, ///< open or close the popover of the one that runs
    settings, ///< start it if need be, and open its settings
};

/// The agent in the status area.
struct AgentRequest {
    std::optional<std::filesystem::path> home{}; ///< as given: not checked yet
    bool fetchesQuota = true;
    AgentAction action = AgentAction::show;

    friend bool operator==(const AgentRequest&, const AgentRequest&) = default;
};

/// Why the arguments cannot be followed: one line for people, without control characters.
struct UsageError {
    std::string message;
};

using CommandLineRequest = std::variant<HelpRequest, VersionRequest, SummaryRequest, AgentRequest, UsageError>;

/// What the arguments (without the program's name, any bytes) ask for. Options may come in any order; of one given
/// twice the last counts. Help is given, then the version, whatever else is asked for correctly.
CommandLineRequest parseCommandLine(std::span<const std::string_view> arguments);

/// The folder that `--home` names, absolute; nothing where the option was not given; an error where it is not a folder.
std::variant<std::optional<std::filesystem::path>, UsageError>
checkHome(const std::optional<std::filesystem::path>& home);

/// The text of `--help`.
std::string helpText();

} // namespace tallyfox
