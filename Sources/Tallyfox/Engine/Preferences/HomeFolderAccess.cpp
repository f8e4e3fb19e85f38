#include "Tallyfox/Engine/Preferences/HomeFolderAccess.h"

#include <fcntl.h>

namespace tallyfox {

HomeFolderAccess::HomeFolderAccess(const std::filesystem::path& home)
    : m_folder(open(home.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC))
{ }

bool HomeFolderAccess::isStarted() const
{
    return m_folder.isOpen();
}

} // namespace tallyfox
