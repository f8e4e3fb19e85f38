#pragma once

#include <functional>

namespace tallyfox::test {

/// Runs `action` in a child process in which the system call `number` (SYS_…) always fails with `error`. Its status;
/// `denialIsImpossible` where the system allows no such filter. The action must return 0 to 199.
int statusWithDeniedCall(int number, int error, const std::function<int()>& action);

inline constexpr int denialIsImpossible = 200;

} // namespace tallyfox::test
