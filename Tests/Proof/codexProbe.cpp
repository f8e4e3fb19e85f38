/// Runs the exchange of a refresh with the fake codex in every mode, COUNT times each in random order.
///
///     codexProbe FAKE COUNT [SEED]
///
/// Each outcome must be the one that is documented for the mode; at the end no process, thread or descriptor may be
/// left. Modes that never answer get a shorter timeout than a refresh.

#include "Support/FakeCodexFolder.h"
#include "Support/ProcessTable.h"
#include "Tallyfox/Engine/Quota/ChildReaper.h"
#include "Tallyfox/Engine/Quota/CodexQuotaFetcher.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using namespace tallyfox;

using Outcome = std::variant<QuotaSnapshot, QuotaError>;

constexpr unsigned threadCount = 12; ///< more than processors: most of the time they wait for children
constexpr auto longTimeout = 120s; ///< only ends what hangs
constexpr auto shortTimeout = 1500ms; ///< for children that never answer

struct Mode {
    const char* name;
    std::optional<double> percent; ///< the documented outcome, if that is a snapshot
    std::optional<SourceError> failure; ///< the documented outcome, if that is one of these; neither: a decoding error
    bool neverAnswers = false;
};

constexpr std::array modes{
    Mode{"normal", 42.5, {}},
    Mode{"notificationsFirst", 42.5, {}},
    Mode{"textId", 42.5, {}},
    Mode{"errorReply", {}, {}},
    Mode{"endsAfterGreeting", {}, SourceError::unavailable},
    Mode{"noFinalLineFeed", 42.5, {}},
    Mode{"emptyReply", {}, {}},
    Mode{"flood", {}, SourceError::timeout, true},
    Mode{"endlessLine", {}, SourceError::timeout, true},
    Mode{"tooLongLine", 7, {}},
    Mode{"garbageOnly", {}, SourceError::unavailable},
    Mode{"garbage", 42.5, {}},
    Mode{"silent", {}, SourceError::timeout, true},
    Mode{"closesOutput", {}, SourceError::unavailable},
    Mode{"ignoresTermination", {}, SourceError::timeout, true},
    Mode{"grandchildKeepsPipe", {}, SourceError::timeout, true},
    Mode{"grandchildAnswers", 42.5, {}},
    Mode{"singleBytes", 42.5, {}},
    Mode{"late", 42.5, {}},
    Mode{"soon", 42.5, {}},
    Mode{"exitsAtOnce", {}, SourceError::unavailable},
    Mode{"exits127", {}, SourceError::unavailable},
};

std::string described(const Outcome& outcome)
{
    if (const auto* quota = std::get_if<QuotaSnapshot>(&outcome))
        return "a snapshot of " + std::to_string(quota->primary.usedPercent);
    const auto& error = std::get<QuotaError>(outcome);
    if (const auto* source = std::get_if<SourceError>(&error))
        return "source error " + std::to_string(static_cast<int>(*source));
    if (const auto* system = std::get_if<std::error_code>(&error))
        return "system error: " + system->message();
    return "a decoding error";
}

bool isDocumented(const Mode& mode, const Outcome& outcome)
{
    if (const auto* quota = std::get_if<QuotaSnapshot>(&outcome))
        return mode.percent && quota->primary.usedPercent == *mode.percent;
    const auto& error = std::get<QuotaError>(outcome);
    if (mode.percent)
        return false;
    if (!mode.failure)
        return std::holds_alternative<DecodingError>(error);
    const auto* source = std::get_if<SourceError>(&error);
    return source && *source == *mode.failure;
}

/// Hands out the exchanges in random order, and counts undocumented outcomes. Any thread.
class Schedule {
public:
    Schedule(std::size_t count, unsigned seed)
    {
        for (const Mode& mode : modes)
            m_exchanges.insert(m_exchanges.end(), count, &mode);
        std::shuffle(m_exchanges.begin(), m_exchanges.end(), std::mt19937{seed});
    }

    const Mode* next()
    {
        const std::size_t place = m_next++;
        return place < m_exchanges.size() ? m_exchanges[place] : nullptr;
    }

    void report(const Mode& mode, const Outcome& outcome)
    {
        if (isDocumented(mode, outcome))
            return;
        ++m_problems;
        std::printf("codex: %s: %s\n", mode.name, described(outcome).c_str());
    }

    [[nodiscard]] std::size_t size() const
    {
        return m_exchanges.size();
    }

    [[nodiscard]] int problems() const
    {
        return m_problems;
    }

private:
    std::vector<const Mode*> m_exchanges;
    std::atomic<std::size_t> m_next = 0;
    std::atomic<int> m_problems = 0;
};

/// One folder for each mode, because a fake writes notes into its own.
using Folders = std::map<const Mode*, test::FakeCodexFolder>;

void exchange(const std::filesystem::path& fake, Schedule& schedule, ChildReaper& reaper, Folders& folders)
{
    while (const Mode* const mode = schedule.next()) {
        const auto& folder = folders.try_emplace(mode, fake, mode->name).first->second;
        const std::chrono::milliseconds timeout = mode->neverAnswers ? shortTimeout : longTimeout;
        schedule.report(*mode, CodexQuotaFetcher::fetch({folder.executable()}, reaper, {}, timeout));
    }
}

/// The number of children of this process, plus all processes that run an executable of these folders.
int survivors(const std::vector<Folders>& folders)
{
    std::set<std::string> names;
    for (const Folders& ofOneThread : folders) {
        for (const auto& [mode, folder] : ofOneThread)
            names.insert(folder.executable());
    }
    int count = test::childCount();
    for (const auto& entry : std::filesystem::directory_iterator{"/proc"}) {
        std::string name;
        std::ifstream commandLine{entry.path() / "cmdline", std::ios::binary};
        count += std::getline(commandLine, name, '\0') && names.contains(name) ? 1 : 0;
    }
    return count;
}

/// Gives the reaper time to kill children that ignore SIGTERM.
int survivorsAfterReaping(const std::vector<Folders>& folders)
{
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (survivors(folders) > 0 && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(20ms);
    return survivors(folders);
}

int threadsOfThisProcess()
{
    const std::filesystem::directory_iterator threads{"/proc/self/task"};
    return static_cast<int>(std::distance(begin(threads), end(threads)));
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount < 3)
        return 2;
    const int descriptors = test::openDescriptorCount();
    const auto seed = argumentCount > 3 ? static_cast<unsigned>(std::stoul(arguments[3])) : std::random_device{}();
    Schedule schedule{std::stoul(arguments[2]), seed};
    int left = 0;
    {
        ChildReaper reaper;
        std::vector<Folders> folders(threadCount);
        std::vector<std::thread> threads;
        const auto fake = std::filesystem::absolute(arguments[1]);
        for (Folders& ofOneThread : folders)
            threads.emplace_back([&] { exchange(fake, schedule, reaper, ofOneThread); });
        for (std::thread& thread : threads)
            thread.join();
        left = survivorsAfterReaping(folders); // before the reaper's destructor, which would end them all
    }
    const int lost = test::openDescriptorCount() - descriptors;
    const int strayThreads = threadsOfThisProcess() - 1;
    std::printf("codex: %zu exchanges in %zu modes (seed %u), %d with an undocumented outcome; %d processes, %d "
                "descriptors, %d threads left\n",
                schedule.size(), modes.size(), seed, schedule.problems(), left, lost, strayThreads);
    return schedule.problems() == 0 && left == 0 && lost == 0 && strayThreads == 0 ? 0 : 1;
}
