#pragma once

#include <QTimer>

#include <chrono>
#include <functional>
#include <limits>

namespace tallyfox {

/// A repeating timer for intervals of any length: it measures against a deadline, so that neither the width of the
/// toolkit's timers nor a wake-up that comes too early or too late moves the firings after it. Main thread only.
class RefreshTimer {
public:
    using Clock = std::chrono::steady_clock;

    /// Longer intervals are taken as this one: no process lives for a century, and deadlines stay representable.
    static constexpr std::chrono::seconds maximumInterval = std::chrono::years{100};

    /// No single wait is longer than this, which is what the toolkit's timers can hold.
    static constexpr std::chrono::milliseconds maximumWait{std::numeric_limits<int>::max()};

    explicit RefreshTimer(std::function<void()> action, std::chrono::milliseconds longestWait = maximumWait);

    /// Fires every `interval` (longer than 0), for the first time one whole interval from now; replaces any earlier
    /// arming. Firings that were missed, for example because the main thread was busy, are not made up for.
    void arm(std::chrono::milliseconds interval);

private:
    void wait();
    void wake();

    std::function<void()> m_action;
    std::chrono::milliseconds m_longestWait;
    std::chrono::milliseconds m_interval{};
    Clock::time_point m_due;
    QTimer m_timer;
};

} // namespace tallyfox
