#pragma once

#include <QtCore/qtestsupport_core.h>

#include <chrono>

namespace tallyfox::test {

/// Runs the event loop until a condition holds. The limit only keeps a failing test from hanging.
template <typename Predicate> bool spinUntil(const Predicate& isSo)
{
    constexpr std::chrono::milliseconds hangGuard = std::chrono::seconds{60};
    return QTest::qWaitFor(isSo, static_cast<int>(hangGuard.count()));
}

/// Runs the event loop for a while.
inline void spinFor(std::chrono::milliseconds time)
{
    QTest::qWait(static_cast<int>(time.count()));
}

} // namespace tallyfox::test
