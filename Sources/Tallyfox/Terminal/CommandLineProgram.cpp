#include "Tallyfox/Terminal/CommandLineProgram.h"

#include "Tallyfox/Engine/Preferences/UserDefaults.h"
#include "Tallyfox/Engine/Store/UsageStore.h"
#include "Tallyfox/Engine/System/StandardStreams.h"
#include "Tallyfox/Engine/System/SystemPaths.h"
#include "Tallyfox/Engine/System/TerminationSignals.h"
#include "Tallyfox/Terminal/SummaryJson.h"
#include "Tallyfox/Terminal/SummaryTable.h"

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace tallyfox {

namespace {

/// Returns `status` if the text was written or the reader has gone.
ExitStatus print(std::string_view text, ExitStatus status = ExitStatus::done)
{
    const auto outcome = StandardStreams::writeOutput(text);
    const auto* error = std::get_if<std::error_code>(&outcome);
    if (!error)
        return status;
    StandardStreams::writeDiagnostic("cannot write to standard output: " + error->message());
    return ExitStatus::failure;
}

StoreEnvironment makeEnvironment(const SummaryRequest& request, const std::optional<std::filesystem::path>& home)
{
    StoreEnvironment environment = makeStoreEnvironment(UserDefaults::standardPath(), home);
    if (request.fetchesQuota)
        addCodexQuota(environment);
    return environment;
}

/// Runs one refresh in an event loop of its own. A signal that ends the program ends it here, after its child processes
/// have ended.
UsageSnapshot refreshOnce(const StoreEnvironment& environment)
{
    TerminationSignals signals;
    signals.watch();
    UsageSnapshot snapshot;
    {
        UsageStore store{environment};
        QObject::connect(&store, &UsageStore::isRefreshingPublished, &store, [](bool isRefreshing) {
            if (!isRefreshing)
                QCoreApplication::quit();
        });
        QObject::connect(&signals, &TerminationSignals::received, &store, &QCoreApplication::quit);
        // Wakes the event loop each second: should the system lose the wake-up of a posted event, the result is late
        // instead of lost.
        QTimer heartbeat;
        heartbeat.start(std::chrono::seconds{1});
        store.refresh();
        QCoreApplication::exec();
        snapshot = store.snapshot();
    }
    signals.raiseReceived();
    return snapshot;
}

/// Replaces this process by the agent's program, with the same arguments: it loads Qt Widgets, which terminal commands
/// should not wait for. Returns only on failure.
std::error_code replaceWithAgent(char** argv)
{
    std::error_code error;
    const std::filesystem::path folder = programFolder(error);
    if (error)
        return error;
    // In the build folder it is beside this program; installed, it is among the programs that users do not start.
    for (const auto* place : {"tallyfox-agent", "../libexec/tallyfox/tallyfox-agent"}) {
        ::execv((folder / place).c_str(), argv);
        error = {errno, std::generic_category()};
        if (error != std::errc::no_such_file_or_directory)
            break;
    }
    return error;
}

} // namespace

CommandLineProgram::CommandLineProgram(int& argc, char** argv)
    : m_argc(argc)
    , m_argv(argv)
{ }

ExitStatus CommandLineProgram::run()
{
    const std::vector<std::string_view> arguments(m_argv + std::min(1, m_argc), m_argv + m_argc);
    return std::visit([this](const auto& request) { return runRequest(request); }, parseCommandLine(arguments));
}

ExitStatus CommandLineProgram::runRequest(const HelpRequest& /*request*/)
{
    return print(helpText());
}

ExitStatus CommandLineProgram::runRequest(const VersionRequest& /*request*/)
{
    return print("tallyfox " TALLYFOX_VERSION "\n");
}

ExitStatus CommandLineProgram::runRequest(const AgentRequest& /*request*/)
{
    const std::error_code error = replaceWithAgent(m_argv);
    StandardStreams::writeDiagnostic("cannot start the agent: " + error.message());
    return ExitStatus::failure;
}

ExitStatus CommandLineProgram::runRequest(const UsageError& error)
{
    StandardStreams::writeDiagnostic(error.message);
    return ExitStatus::wrongUsage;
}

ExitStatus CommandLineProgram::runRequest(const SummaryRequest& request)
{
    const auto home = checkHome(request.home);
    if (const auto* error = std::get_if<UsageError>(&home))
        return runRequest(*error);
    StandardStreams::silenceToolkit();
    const QCoreApplication application{m_argc, m_argv};
    const UsageSnapshot snapshot =
        refreshOnce(makeEnvironment(request, std::get<std::optional<std::filesystem::path>>(home)));
    const ExitStatus status = snapshot.hasHomeAccess ? ExitStatus::done : ExitStatus::noHomeFolder;
    const std::string text =
        request.isJson ? SummaryJson::document(snapshot) : SummaryTable::text(snapshot, StandardStreams::outputStyle());
    const ExitStatus outcome = print(text, status);
    if (outcome == ExitStatus::noHomeFolder)
        StandardStreams::writeDiagnostic("no home folder has been granted; --home DIR uses one for this run");
    return outcome;
}

} // namespace tallyfox
