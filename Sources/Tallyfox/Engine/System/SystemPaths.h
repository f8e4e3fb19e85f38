#pragma once

#include <filesystem>
#include <system_error>

namespace tallyfox {

/// The home folder of the user's account: `$HOME` when it is an absolute path, else the one in the account database,
/// else
/// "/". Not necessarily the folder the user has granted. Any thread, as long as no thread changes the environment.
std::filesystem::path accountHome();

/// The folder of the user's configuration files: `$XDG_CONFIG_HOME` when it is an absolute path, else ".config" in
/// `accountHome()`. Any thread, under the same condition.
std::filesystem::path configurationFolder();

/// The folder that contains the running executable.
std::filesystem::path programFolder(std::error_code& error);

/// The absolute path of `tallyfox`, the command that users start. Only for the agent.
std::filesystem::path commandPath();

} // namespace tallyfox
