#pragma once

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace tallyfox::test {

/// Lets events happen until `condition` holds; whether it came to hold in time. A guard against hanging, not a
/// measure.
template <typename Condition>
bool waitUntil(const Condition& condition, std::chrono::milliseconds limit = std::chrono::seconds{20})
{
    const QDeadlineTimer deadline{limit};
    QEventLoop loop;
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        loop.processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

/// Lets events happen for a while.
inline void letPass(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace tallyfox::test
