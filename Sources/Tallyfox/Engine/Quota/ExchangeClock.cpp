#include "Tallyfox/Engine/Quota/ExchangeClock.h"

#include <array>
#include <cerrno>
#include <ctime>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>

namespace tallyfox {

namespace {

std::error_code lastError()
{
    return {errno, std::system_category()};
}

bool arm(const FileDescriptor& timer, std::chrono::milliseconds limit)
{
    timespec now{};
    if (clock_gettime(CLOCK_BOOTTIME, &now) != 0)
        return false;
    const auto deadline = std::chrono::seconds{now.tv_sec} + std::chrono::nanoseconds{now.tv_nsec} + limit;
    const auto seconds = std::chrono::floor<std::chrono::seconds>(deadline);
    itimerspec setting{};
    setting.it_value.tv_sec = seconds.count();
    setting.it_value.tv_nsec = (deadline - seconds).count();
    return timerfd_settime(timer.get(), TFD_TIMER_ABSTIME, &setting, nullptr) == 0;
}

} // namespace

ExchangeClock::ExchangeClock(std::chrono::milliseconds limit, const std::stop_token& stop)
    : m_timer(timerfd_create(CLOCK_BOOTTIME, TFD_CLOEXEC))
    , m_stopped(eventfd(0, EFD_CLOEXEC))
{
    if (!m_timer.isOpen() || !m_stopped.isOpen() || !arm(m_timer, limit))
        m_error = lastError();
    else
        m_onStop.emplace(stop, [descriptor = m_stopped.get()] { eventfd_write(descriptor, 1); });
}

std::variant<ExchangeClock::Wake, std::error_code> ExchangeClock::wait(const FileDescriptor& output) const
{
    if (m_error)
        return m_error;
    std::array<pollfd, 3> watched{pollfd{.fd = m_stopped.get(), .events = POLLIN, .revents = 0},
                                  pollfd{.fd = m_timer.get(), .events = POLLIN, .revents = 0},
                                  pollfd{.fd = output.get(), .events = POLLIN, .revents = 0}};
    while (poll(watched.data(), watched.size(), -1) < 0) {
        if (errno != EINTR)
            return lastError();
    }
    return Wake{.isStopped = watched[0].revents != 0,
                .isExpired = watched[1].revents != 0,
                .hasOutput = watched[2].revents != 0};
}

} // namespace tallyfox
