#pragma once

#include <filesystem>
#include <functional>
#include <optional>

namespace tallyfox::test {

/// Runs `action` in a child process without privileges, in `folder`: as the user of the tests or, if that is root, as
/// "nobody". Its status, which must be 0 to 199; nothing where the system does not let root become "nobody". The action
/// must use relative paths, because the child may have no access to the folders above.
std::optional<int> statusWithoutPrivileges(const std::filesystem::path& folder, const std::function<int()>& action);

} // namespace tallyfox::test
