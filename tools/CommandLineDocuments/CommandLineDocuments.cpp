#include "CommandLineDocuments/CommandLineDocuments.h"

#include "Tallyfox/Engine/CommandLine/CommandLineOptions.h"

#include <string_view>

namespace tallyfox::CommandLineDocuments {

namespace {

/// The text with literal hyphens, which mdoc neither turns into dashes nor breaks lines at.
std::string typed(std::string_view text)
{
    std::string result;
    for (const char character : text)
        result += character == '-' ? std::string{"\\-"} : std::string{character};
    return result;
}

std::string manualOption(const CommandLineOption& option)
{
    std::string text = ".It Fl Fl " + typed(option.name.substr(2));
    if (!option.argument.empty())
        text += " Ar " + std::string{option.argument};
    std::string description{option.description};
    description.front() = static_cast<char>(description.front() - 'a' + 'A');
    return text + '\n' + description + ".\n";
}

/// Every option's name, each followed by `separator`.
std::string optionNames(std::string_view separator)
{
    std::string names;
    for (const CommandLineOption& option : commandLineOptions())
        names.append(option.name).append(separator);
    return names;
}

constexpr std::string_view manualHead = R"(.Dd November 21, 2026
.Dt TALLYFOX 1
.Os
.Sh NAME
.Nm tallyfox
.Nd usage and quota of AI coding assistants
.Sh SYNOPSIS
.Nm
.Op Fl Fl settings
.Op Fl Fl home Ar DIR
.Op Fl Fl no\-quota
.Nm
.Fl Fl toggle
.Nm
.Fl Fl summary
.Op Fl Fl json
.Op Fl Fl home Ar DIR
.Op Fl Fl no\-quota
.Nm
.Fl Fl help | Fl Fl version
.Sh DESCRIPTION
.Nm
tells how much of Claude Code and the Codex CLI you have used, and how much
quota is left, from the histories on this machine.
Nothing is uploaded.
.Pp
Without options it starts the agent with its icon in the status area;
where one runs already for this desktop, its popover opens.
.Pp
The options are as follows:
.Bl -tag -width Ds
)";

constexpr std::string_view manualTail = R"(.El
.Pp
Days are those of the system's time zone, or of the one in
.Ev TZ .
The table of
.Fl Fl summary
has colours on a terminal unless
.Ev NO_COLOR
is set.
.Sh FILES
.Bl -tag -width Ds
.It Pa ~/.claude/projects , ~/.codex/sessions
The histories that are read, below the home folder that has been granted.
.It Pa ~/.config/tallyfox/tallyfox.ini
The preferences.
.It Pa ~/.local/bin/codex , /opt/homebrew/bin/codex , /usr/local/bin/codex
Where the
.Nm codex
executable is looked for, in this order; it is asked for the rate limits.
.El
.Sh EXIT STATUS
.Bl -tag -width Ds
.It 0
Done.
.It 1
Failure.
.It 2
Wrong usage.
.It 3
No home folder has been granted; the summary is printed all the same.
.El
.Sh EXAMPLES
Open and close the popover by a key of the compositor:
.Pp
.Dl tallyfox \-\-toggle
.Pp
The highest quota percentage, for a status bar:
.Pp
.Dl tallyfox \-\-summary \-\-json | jq .combinedPercent
)";

} // namespace

std::string manual()
{
    std::string text{manualHead};
    for (const CommandLineOption& option : commandLineOptions())
        text += manualOption(option);
    return text.append(manualTail);
}

std::string bashCompletion()
{
    return R"(# bash completion for tallyfox
_tallyfox()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    if [[ $previous == --home ]]; then
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
        compopt -o filenames
        return
    fi
    mapfile -t COMPREPLY < <(compgen -W ")"
        + optionNames(" ") + R"(" -- "$current")
}
complete -F _tallyfox tallyfox
)";
}

std::string zshCompletion()
{
    std::string text = "#compdef tallyfox\n\n_arguments";
    for (const CommandLineOption& option : commandLineOptions()) {
        text.append(" \\\n    '").append(option.name).append("[").append(option.description).append("]");
        if (!option.argument.empty())
            text.append(":folder:_files -/");
        text += '\'';
    }
    return text + '\n';
}

std::string fishCompletion()
{
    std::string text = "complete -c tallyfox -f\n";
    for (const CommandLineOption& option : commandLineOptions()) {
        text.append("complete -c tallyfox -l ").append(option.name.substr(2));
        if (!option.argument.empty())
            text.append(" -r -a '(__fish_complete_directories)'");
        text.append(" -d '").append(option.description).append("'\n");
    }
    return text;
}

} // namespace tallyfox::CommandLineDocuments
