#pragma once

#include <filesystem>
#include <system_error>

namespace tallyfox {

/// The home folder of the account the program runs under: `$HOME` when it is an absolute path, else what the account
/// database says, else "/". Not necessarily the folder the user has granted. Any thread, as long as nobody changes
/// the environment meanwhile.
std::filesystem::path accountHome();

/// The folder of the account's configuration files: `$XDG_CONFIG_HOME` when it is an absolute path, else ".config" in
/// its home. Any thread, under the same condition.
std::filesystem::path configurationFolder();

/// The folder of this program's file.
std::filesystem::path programFolder(std::error_code& error);

/// The absolute path of `tallyfox`, the command that users start, from within the agent.
std::filesystem::path commandPath();

} // namespace tallyfox
