#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <sys/types.h>
#include <system_error>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

namespace tallyfox {

/// Ends child processes, a whole process group at a time, and leaves no zombies. The reaper owns each child from its
/// start; nobody else may wait for a group's leader: while the leader is not reaped, its process id, which is also the
/// group's, cannot be reused.
///
/// Any thread may use it. Its own thread runs only while a group is being ended.
class ChildReaper {
public:
    /// Starts a child as the leader of a new process group; returns its process id, or the system's error.
    using Spawn = std::function<std::variant<pid_t, std::error_code>()>;

    struct Ended { }; ///< `endAll` has been called: nothing can be started any more

    /// A running child. Destroying it sends the group SIGTERM; the reaper kills what remains in the background, so that
    /// nothing of the group is left after 2 seconds.
    class Child {
    public:
        Child(Child&& other) noexcept
            : m_reaper(std::exchange(other.m_reaper, nullptr))
            , m_processId(other.m_processId)
        { }
        Child(const Child&) = delete;
        Child& operator=(const Child&) = delete;
        Child& operator=(Child&&) = delete;
        ~Child();

        [[nodiscard]] pid_t processId() const
        {
            return m_processId;
        }

    private:
        friend class ChildReaper;
        Child(ChildReaper& reaper, pid_t processId)
            : m_reaper(&reaper)
            , m_processId(processId)
        { }

        ChildReaper* m_reaper; ///< null when moved from
        pid_t m_processId;
    };

    /// Makes the program's children waitable, in case its parent process made it ignore SIGCHLD.
    ChildReaper();
    ChildReaper(const ChildReaper&) = delete;
    ChildReaper& operator=(const ChildReaper&) = delete;
    /// Calls `endAll`. Every `Child` must have been destroyed before.
    ~ChildReaper();

    std::variant<Child, std::error_code, Ended> start(const Spawn& spawn);

    /// Terminates every group, then kills and reaps it, within about 100 milliseconds. Afterwards nothing can be
    /// started any more.
    void endAll();

private:
    using Clock = std::chrono::steady_clock;
    struct Group {
        pid_t leader;
        std::optional<Clock::time_point> terminatedAt; ///< since when it is being ended
        std::optional<Clock::time_point> leaderExitedAt;
        bool isKilled = false;
    };

    void beginEnding(pid_t leader);
    void startThread();
    void endInBackground();
    [[nodiscard]] bool isEnding() const;
    static bool isGone(Group& group, Clock::time_point now);
    static void endNow(std::vector<Group> groups);

    std::mutex m_mutex; ///< guards everything below
    std::condition_variable m_closed;
    std::vector<Group> m_groups;
    std::thread m_thread;
    bool m_threadRuns = false;
    bool m_isClosed = false;
};

} // namespace tallyfox
