#pragma once

#include <filesystem>

namespace tallyfox {

/// The home folder of the account the program runs under: `$HOME` when it is an absolute path, else what the account
/// database says, else "/". Not necessarily the folder the user has granted. Any thread, as long as nobody changes
/// the environment meanwhile.
std::filesystem::path accountHome();

} // namespace tallyfox
