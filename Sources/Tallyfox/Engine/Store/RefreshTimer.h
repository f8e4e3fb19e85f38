#pragma once

#include <QTimer>

#include <chrono>
#include <functional>
#include <limits>

namespace tallyfox {

/// A repeating timer for intervals of any length. It measures against a deadline, so that neither the range of QTimer
/// nor an early or late wake-up shifts later firings. Main thread only.
class RefreshTimer {
public:
    using Clock = std::chrono::steady_clock;

    /// Longer intervals are shortened to this one, which keeps deadlines representable.
    static constexpr std::chrono::seconds maximumInterval = std::chrono::years{100};

    /// The longest single wait: the range of QTimer.
    static constexpr std::chrono::milliseconds maximumWait{std::numeric_limits<int>::max()};

    explicit RefreshTimer(std::function<void()> action, std::chrono::milliseconds longestWait = maximumWait);

    /// Fires every `interval` (longer than 0), first after one whole interval; replaces any earlier interval. Firings
    /// missed while the main thread was busy are skipped.
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
