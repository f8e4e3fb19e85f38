#pragma once

#include "Tallyfox/Engine/CommandLine/CommandLineOptions.h"

#include <filesystem>
#include <optional>
#include <variant>

namespace tallyfox {

/// The folder that `--home` names, absolute; nothing where the option was not given; the error where it is no folder.
std::variant<std::optional<std::filesystem::path>, UsageError>
checkedHome(const std::optional<std::filesystem::path>& home);

} // namespace tallyfox
