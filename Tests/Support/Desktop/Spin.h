#pragma once

#include <QCoreApplication>

#include <chrono>
#include <thread>

namespace tallyfox::test {

/// Runs the event loop until something is so; whether it came to be. The limit only keeps a failing test from hanging.
template <typename Predicate> bool spinUntil(const Predicate& isSo)
{
    const auto hangGuard = std::chrono::steady_clock::now() + std::chrono::seconds{60};
    while (!isSo()) {
        if (std::chrono::steady_clock::now() > hangGuard)
            return false;
        QCoreApplication::processEvents(); // the test is the outermost loop here
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
    return true;
}

/// Runs the event loop for a while.
inline void spinFor(std::chrono::milliseconds time)
{
    const auto end = std::chrono::steady_clock::now() + time;
    spinUntil([&] { return std::chrono::steady_clock::now() >= end; });
}

} // namespace tallyfox::test
