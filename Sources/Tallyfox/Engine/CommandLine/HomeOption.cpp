#include "Tallyfox/Engine/CommandLine/HomeOption.h"

#include "Tallyfox/Engine/CommandLine/TextStyle.h"

#include <system_error>

namespace tallyfox {

std::variant<std::optional<std::filesystem::path>, UsageError>
checkedHome(const std::optional<std::filesystem::path>& home)
{
    if (!home)
        return std::optional<std::filesystem::path>{};
    std::error_code error;
    std::filesystem::path folder = std::filesystem::absolute(*home, error);
    if (error || !std::filesystem::is_directory(folder, error))
        return UsageError{"--home is no folder: '" + withoutControls(home->native()) + "'"};
    return std::optional{std::move(folder)};
}

} // namespace tallyfox
