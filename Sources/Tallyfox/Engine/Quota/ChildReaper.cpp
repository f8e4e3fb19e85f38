#include "Tallyfox/Engine/Quota/ChildReaper.h"

#include <algorithm>
#include <csignal>
#include <sys/wait.h>

namespace tallyfox {

using namespace std::chrono_literals;

namespace {

constexpr auto terminationTimeout = 1s; ///< from SIGTERM until the group is killed
constexpr auto groupTimeout = 250ms; ///< for the rest of the group, once its leader has exited
constexpr auto finalTimeout = 100ms; ///< from SIGTERM until SIGKILL in `endAll`, and from that until giving up
constexpr auto pollInterval = 10ms;

enum class LeaderState { running, exited, gone };

/// Does not reap.
LeaderState leaderState(pid_t leader)
{
    siginfo_t info{};
    if (waitid(P_PID, static_cast<id_t>(leader), &info, WEXITED | WNOHANG | WNOWAIT) != 0)
        return LeaderState::gone;
    return info.si_pid == 0 ? LeaderState::running : LeaderState::exited;
}

bool hasExited(pid_t leader)
{
    return leaderState(leader) != LeaderState::running;
}

/// Signals the whole group, unless somebody else has reaped the leader: its process id may have been reused then.
void signalGroup(pid_t leader, int signal)
{
    if (leaderState(leader) != LeaderState::gone)
        killpg(leader, signal);
}

/// False while the leader is still running.
bool reap(pid_t leader)
{
    return waitpid(leader, nullptr, WNOHANG) != 0;
}

template <typename Predicate> void waitAtMost(std::chrono::milliseconds limit, const Predicate& isDone)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!isDone() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(1ms);
}

} // namespace

ChildReaper::Child::~Child()
{
    if (m_reaper)
        m_reaper->beginEnding(m_processId);
}

ChildReaper::ChildReaper()
{
    struct sigaction action { };
    if (sigaction(SIGCHLD, nullptr, &action) != 0)
        return;
    const bool discardsChildren = (action.sa_flags & SA_NOCLDWAIT) != 0;
    if (action.sa_handler != SIG_IGN && !discardsChildren)
        return;
    action.sa_flags &= ~SA_NOCLDWAIT;
    if (action.sa_handler == SIG_IGN)
        action.sa_handler = SIG_DFL;
    sigaction(SIGCHLD, &action, nullptr);
}

ChildReaper::~ChildReaper()
{
    endAll();
}

std::variant<ChildReaper::Child, std::error_code, ChildReaper::Ended> ChildReaper::start(const Spawn& spawn)
{
    {
        const std::lock_guard lock{m_mutex};
        if (m_isClosed)
            return Ended{};
    }
    // Not under the lock: starting a program from a stalled file system blocks, and must not block other threads.
    const auto started = spawn();
    if (const auto* error = std::get_if<std::error_code>(&started))
        return *error;
    const pid_t leader = std::get<pid_t>(started);
    {
        const std::lock_guard lock{m_mutex};
        if (!m_isClosed) {
            m_groups.push_back({.leader = leader, .terminatedAt = {}, .leaderExitedAt = {}});
            return Child{*this, leader};
        }
    }
    endNow({{.leader = leader, .terminatedAt = {}, .leaderExitedAt = {}}});
    return Ended{};
}

void ChildReaper::beginEnding(pid_t leader)
{
    const std::lock_guard lock{m_mutex};
    const auto group =
        std::find_if(m_groups.begin(), m_groups.end(), [&](const Group& each) { return each.leader == leader; });
    if (group == m_groups.end())
        return; // ended by endAll meanwhile
    signalGroup(leader, SIGTERM);
    group->terminatedAt = Clock::now();
    startThread();
}

void ChildReaper::startThread()
{
    if (m_threadRuns)
        return;
    if (m_thread.joinable())
        m_thread.join(); // has already left its loop
    try {
        m_thread = std::thread{&ChildReaper::endInBackground, this};
        m_threadRuns = true;
    } catch (const std::system_error&) {
        std::vector<Group> groups;
        const auto ending =
            std::partition(m_groups.begin(), m_groups.end(), [](const Group& group) { return !group.terminatedAt; });
        groups.assign(ending, m_groups.end());
        m_groups.erase(ending, m_groups.end());
        endNow(std::move(groups));
    }
}

void ChildReaper::endInBackground()
{
    std::unique_lock lock{m_mutex};
    for (;;) {
        const auto now = Clock::now();
        std::erase_if(m_groups, [&](Group& group) { return isGone(group, now); });
        if (!isEnding())
            break;
        m_closed.wait_for(lock, pollInterval);
    }
    m_threadRuns = false;
}

bool ChildReaper::isEnding() const
{
    return std::any_of(m_groups.begin(), m_groups.end(), [](const Group& group) { return group.terminatedAt; });
}

/// Takes the next step in ending a group; true when nothing is left of it.
bool ChildReaper::isGone(Group& group, Clock::time_point now)
{
    if (!group.terminatedAt)
        return false;
    const LeaderState state = leaderState(group.leader);
    if (state == LeaderState::gone)
        return true;
    if (state == LeaderState::exited && !group.leaderExitedAt)
        group.leaderExitedAt = now;
    const auto killAt = group.leaderExitedAt
        ? std::min(*group.leaderExitedAt + groupTimeout, *group.terminatedAt + terminationTimeout)
        : *group.terminatedAt + terminationTimeout;
    if (now >= killAt && !group.isKilled) {
        killpg(group.leader, SIGKILL);
        group.isKilled = true;
    }
    return group.isKilled && reap(group.leader);
}

void ChildReaper::endAll()
{
    std::vector<Group> groups;
    std::thread thread;
    {
        const std::lock_guard lock{m_mutex};
        m_isClosed = true;
        groups.swap(m_groups);
        thread.swap(m_thread);
    }
    m_closed.notify_all();
    for (const Group& group : groups)
        signalGroup(group.leader, SIGTERM);
    waitAtMost(finalTimeout, [&] {
        return std::all_of(groups.begin(), groups.end(), [](const Group& group) { return hasExited(group.leader); });
    });
    endNow(std::move(groups));
    if (thread.joinable())
        thread.join();
}

/// Kills and reaps. A leader that is stuck in the kernel beyond the timeout is left to the system.
void ChildReaper::endNow(std::vector<Group> groups)
{
    for (const Group& group : groups)
        signalGroup(group.leader, SIGKILL);
    waitAtMost(finalTimeout, [&] {
        std::erase_if(groups, [](const Group& group) { return reap(group.leader); });
        return groups.empty();
    });
}

} // namespace tallyfox
