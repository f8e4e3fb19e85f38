#pragma once

#include <functional>

namespace tallyfox::test {

/// The status with which `action` ends in a child of this process for which the kernel answers the system call `number`
/// (SYS_…) with `error`, always; `denialIsImpossible` where the system allows no such filter. The action must return 0
/// to 199.
int statusWithDeniedCall(int number, int error, const std::function<int()>& action);

inline constexpr int denialIsImpossible = 200;

} // namespace tallyfox::test
