#include "Tallyfox/Engine/Store/RefreshTimer.h"

#include <algorithm>

namespace tallyfox {

RefreshTimer::RefreshTimer(std::function<void()> action, std::chrono::milliseconds longestWait)
    : m_action(std::move(action))
    , m_longestWait(longestWait)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { wake(); });
}

void RefreshTimer::arm(std::chrono::milliseconds interval)
{
    m_interval = std::min<std::chrono::milliseconds>(interval, maximumInterval);
    m_due = Clock::now() + m_interval;
    wait();
}

void RefreshTimer::wait()
{
    const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(m_due - Clock::now());
    m_timer.start(std::clamp(remaining, std::chrono::milliseconds{0}, m_longestWait));
}

void RefreshTimer::wake()
{
    const auto now = Clock::now();
    if (now < m_due) {
        wait();
        return;
    }
    m_due += m_interval * ((now - m_due) / m_interval + 1);
    wait();
    m_action(); // last: it may destroy this timer
}

} // namespace tallyfox
