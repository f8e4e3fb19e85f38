/// Arguments of any bytes, separated by NUL: parsed as a plain reading of the rules, with messages that are safe for a
/// terminal.

#include "FuzzSupport.h"
#include "Tallyfox/Engine/CommandLine/CommandLineOptions.h"
#include "TallyfoxCore/Json/Utf8.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

using namespace tallyfox;

namespace {

std::vector<std::string_view> argumentsOf(std::string_view text)
{
    std::vector<std::string_view> arguments;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\0'), text.size());
        arguments.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return arguments;
}

/// The arguments, and whether they were wrong.
struct Given {
    std::set<std::string_view> options;
    std::optional<std::filesystem::path> home;
    bool isWrong = false;

    explicit Given(const std::vector<std::string_view>& arguments)
    {
        const std::set<std::string_view> flags{"--toggle",   "--settings", "--summary", "--json",
                                               "--no-quota", "--help",     "--version"};
        for (std::size_t index = 0; index < arguments.size(); ++index) {
            const std::string_view argument = arguments[index];
            const bool takesNext = argument == "--home";
            isWrong |= takesNext && index + 1 == arguments.size();
            if (takesNext && index + 1 < arguments.size())
                home = arguments[++index];
            else if (argument.starts_with("--home="))
                home = argument.substr(7);
            else if (flags.contains(argument))
                options.insert(argument);
            else
                isWrong = true;
        }
    }

    [[nodiscard]] bool has(std::string_view option) const
    {
        return options.contains(option);
    }
};

template <typename Request> bool isA(const CommandLineRequest& request)
{
    return std::holds_alternative<Request>(request);
}

void checkMessage(const std::string& message)
{
    require(isValidUtf8(message), "a message is UTF-8");
    require(message.size() < 400, "a message is short");
    for (const char character : message)
        require(static_cast<unsigned char>(character) >= 0x20 && character != 0x7F, "a message is one plain line");
}

void checkAction(const CommandLineRequest& request, const Given& given)
{
    const auto actions = given.has("--toggle") + given.has("--settings") + given.has("--summary");
    const bool togglesWithMore = given.has("--toggle") && (given.home || given.has("--no-quota"));
    const bool isWrong = actions > 1 || togglesWithMore || (given.has("--json") && !given.has("--summary"));
    require(isWrong == isA<UsageError>(request), "what excludes each other is refused, and only that");
    const bool fetchesQuota = !given.has("--no-quota");
    if (isWrong)
        return;
    if (given.has("--summary"))
        return require(std::get<SummaryRequest>(request)
                           == SummaryRequest{given.home, fetchesQuota, given.has("--json")},
                       "a summary is asked for as it was given");
    const AgentAction action = given.has("--toggle") ? AgentAction::toggle
        : given.has("--settings")                    ? AgentAction::settings
                                                     : AgentAction::show;
    require(std::get<AgentRequest>(request) == AgentRequest{given.home, fetchesQuota, action},
            "the agent is asked for as it was given");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::vector<std::string_view> arguments = argumentsOf(textOf(data, size));
    const CommandLineRequest request = parseCommandLine(arguments);
    if (const auto* const error = std::get_if<UsageError>(&request))
        checkMessage(error->message);
    const Given given{arguments};
    if (given.isWrong)
        require(isA<UsageError>(request), "a wrong argument is wrong beside whatever else");
    else if (given.has("--help"))
        require(isA<HelpRequest>(request), "help comes first");
    else if (given.has("--version"))
        require(isA<VersionRequest>(request), "the version comes second");
    else
        checkAction(request, given);
    return 0;
}
