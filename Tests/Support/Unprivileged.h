#pragma once

#include <filesystem>
#include <functional>
#include <optional>

namespace tallyfox::test {

/// The status with which `action` ends in a child of this process that has no privileges and works in `folder`; the
/// action refers to files by relative paths, since the way to the folder may be closed for the child. The tests' own
/// user if it is not root, else nobody. Nothing where the system does not let root become nobody. The action must
/// return 0 to 199.
std::optional<int> statusWithoutPrivileges(const std::filesystem::path& folder, const std::function<int()>& action);

} // namespace tallyfox::test
