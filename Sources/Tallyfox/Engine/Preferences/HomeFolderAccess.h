#pragma once

#include "TallyfoxCore/Files/FileDescriptor.h"

#include <filesystem>

namespace tallyfox {

/// Access to the granted folder, held for the duration of one scan: as long as the object lives the folder stays
/// open, so that its file system cannot be unmounted under the scan. Grants nothing by itself.
class HomeFolderAccess {
public:
    explicit HomeFolderAccess(const std::filesystem::path& home);

    /// Whether access could be started; a scan may be tried all the same.
    [[nodiscard]] bool isStarted() const;

private:
    FileDescriptor m_folder;
};

} // namespace tallyfox
