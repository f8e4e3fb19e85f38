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

/// Sees to it that child processes end, whole process groups at a time, and that none is left as a zombie. A child
/// belongs to the reaper from its start on, and its leader is not waited for by anybody else: as long as the leader
/// stays unreaped its number, which is the group's, cannot be given to a stranger.
///
/// Any thread may use it. A thread of its own runs only while something is being ended.
class ChildReaper {
public:
    /// Starts a child as the leader of a new process group; its process id, or the system's error.
    using Spawn = std::function<std::variant<pid_t, std::error_code>()>;

    struct Ended { }; ///< `endAll` has been called: nothing may be started any more

    /// A running child. When the object goes, the child's group is told to terminate; what is still there a moment
    /// later is killed in the background, so that nothing of the group is left 2 seconds afterwards.
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

    /// Makes the program's children waitable, in case whoever started it had it ignore their end (SIGCHLD).
    ChildReaper();
    ChildReaper(const ChildReaper&) = delete;
    ChildReaper& operator=(const ChildReaper&) = delete;
    /// As `endAll`. Every `Child` must be gone before.
    ~ChildReaper();

    std::variant<Child, std::error_code, Ended> start(const Spawn& spawn);

    /// Ends every group within about 100 milliseconds: told to terminate, then killed and reaped. Afterwards nothing
    /// can be started any more.
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
