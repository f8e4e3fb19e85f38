#include "Tallyfox/Engine/CommandLine/CommandLineOptions.h"

#include "Tallyfox/Engine/CommandLine/TextStyle.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <system_error>
#include <utility>

namespace tallyfox {

namespace {

using Meaning = CommandLineOption::Meaning;

constexpr std::array options{
    CommandLineOption{Meaning::toggle, "--toggle", "", "open or close the popover of the running agent"},
    CommandLineOption{Meaning::settings, "--settings", "", "open the settings window, starting the agent if need be"},
    CommandLineOption{Meaning::summary, "--summary", "", "refresh once and print a table"},
    CommandLineOption{Meaning::json, "--json", "", "print one JSON document instead of the table"},
    CommandLineOption{Meaning::home, "--home", "DIR", "use DIR as the granted home folder, for this run only"},
    CommandLineOption{Meaning::noQuota, "--no-quota", "", "do not start the codex executable"},
    CommandLineOption{Meaning::help, "--help", "", "print this help"},
    CommandLineOption{Meaning::version, "--version", "", "print the version"},
};

/// An argument, quoted for a message: without control characters, and cut to 64 bytes.
std::string quoted(std::string_view text)
{
    constexpr std::size_t longest = 64;
    const std::string shown = replaceControls(text.substr(0, longest));
    return "'" + shown + (text.size() > longest ? "…'" : "'");
}

UsageError usageError(const std::string& problem)
{
    return {problem + "; see tallyfox --help"};
}

/// Collects the options and turns them into a request.
class Parser {
public:
    std::optional<UsageError> take(std::span<const std::string_view> arguments)
    {
        for (std::size_t index = 0; index < arguments.size(); ++index) {
            const std::string_view argument = arguments[index];
            const std::size_t equals = argument.find('=');
            const CommandLineOption* option = find(argument.substr(0, equals));
            if (!option)
                return unknown(argument);
            std::optional<std::string_view> value;
            if (equals != std::string_view::npos)
                value = argument.substr(equals + 1);
            if (option->argument.empty() && value)
                return usageError(std::string{option->name} + " takes no argument");
            if (!option->argument.empty() && !value) {
                if (++index == arguments.size())
                    return usageError(std::string{option->name} + " needs an argument");
                value = arguments[index];
            }
            set(*option, value.value_or(std::string_view{}));
        }
        return std::nullopt;
    }

    [[nodiscard]] CommandLineRequest request() const
    {
        if (isGiven(Meaning::help))
            return HelpRequest{};
        if (isGiven(Meaning::version))
            return VersionRequest{};
        if (const auto both = findFirstTwo({Meaning::toggle, Meaning::settings, Meaning::summary}))
            return usageError(findName(both->first) + " and " + findName(both->second) + " exclude each other");
        if (isGiven(Meaning::summary))
            return SummaryRequest{m_home, !isGiven(Meaning::noQuota), isGiven(Meaning::json)};
        if (isGiven(Meaning::json))
            return usageError("--json is an option of --summary");
        return agentRequest();
    }

private:
    static const CommandLineOption* find(std::string_view name)
    {
        const auto* const found = std::find_if(options.begin(), options.end(),
                                               [&](const CommandLineOption& option) { return option.name == name; });
        return found == options.end() ? nullptr : found;
    }

    static UsageError unknown(std::string_view argument)
    {
        const bool isOption = argument.starts_with('-');
        return usageError((isOption ? "unknown option " : "unexpected argument ") + quoted(argument));
    }

    [[nodiscard]] CommandLineRequest agentRequest() const
    {
        if (!isGiven(Meaning::toggle)) {
            const auto action = isGiven(Meaning::settings) ? AgentAction::settings : AgentAction::show;
            return AgentRequest{m_home, !isGiven(Meaning::noQuota), action};
        }
        for (const Meaning meaning : {Meaning::home, Meaning::noQuota}) {
            if (isGiven(meaning))
                return usageError(findName(meaning) + " means nothing with --toggle");
        }
        return AgentRequest{.action = AgentAction::toggle};
    }

    void set(const CommandLineOption& option, std::string_view value)
    {
        m_given.at(static_cast<std::size_t>(option.meaning)) = true;
        if (option.meaning == Meaning::home)
            m_home = std::filesystem::path{value};
    }

    [[nodiscard]] bool isGiven(Meaning meaning) const
    {
        return m_given.at(static_cast<std::size_t>(meaning));
    }

    /// The first two of `meanings` that are given, if at least two are.
    [[nodiscard]] std::optional<std::pair<Meaning, Meaning>> findFirstTwo(std::initializer_list<Meaning> meanings) const
    {
        std::optional<Meaning> first;
        for (const Meaning meaning : meanings) {
            if (!isGiven(meaning))
                continue;
            if (first)
                return std::pair{*first, meaning};
            first = meaning;
        }
        return std::nullopt;
    }

    static std::string findName(Meaning meaning)
    {
        const auto* const found = std::find_if(
            options.begin(), options.end(), [&](const CommandLineOption& option) { return option.meaning == meaning; });
        return std::string{found->name};
    }

    std::array<bool, options.size()> m_given{};
    std::optional<std::filesystem::path> m_home;
};

} // namespace

std::span<const CommandLineOption> commandLineOptions()
{
    return options;
}

CommandLineRequest parseCommandLine(std::span<const std::string_view> arguments)
{
    Parser parser;
    if (const auto error = parser.take(arguments))
        return *error;
    return parser.request();
}

std::variant<std::optional<std::filesystem::path>, UsageError>
checkHome(const std::optional<std::filesystem::path>& home)
{
    if (!home)
        return std::optional<std::filesystem::path>{};
    std::error_code error;
    std::filesystem::path folder = std::filesystem::absolute(*home, error);
    if (error || !std::filesystem::is_directory(folder, error))
        return UsageError{"--home is no folder: '" + replaceControls(home->native()) + "'"};
    return std::optional{std::move(folder)};
}

std::string helpText()
{
    constexpr std::size_t nameColumns = 14;
    std::string text = "Usage: tallyfox [--settings] [--home DIR] [--no-quota]\n"
                       "       tallyfox --toggle\n"
                       "       tallyfox --summary [--json] [--home DIR] [--no-quota]\n"
                       "       tallyfox --help | --version\n\n"
                       "Shows how much of Claude Code and the Codex CLI you have used, and how much\n"
                       "quota is left, from the histories on this machine. Nothing is uploaded.\n"
                       "Without options it starts the agent with its icon in the status area; where one\n"
                       "runs already, its popover opens.\n\n";
    for (const CommandLineOption& option : options) {
        const std::string name =
            std::string{option.name}.append(option.argument.empty() ? "" : " ").append(option.argument);
        text += "  " + padRight(name, nameColumns) + std::string{option.description} + '\n';
    }
    return text
        + "\n"
          "Days are those of the system's time zone, or of the one in TZ. The table has\n"
          "colours on a terminal unless NO_COLOR is set.\n\n"
          "Exit status: 0 done; 1 failure; 2 wrong usage; 3 no home folder has been granted\n"
          "(the result is printed all the same).\n";
}

} // namespace tallyfox
