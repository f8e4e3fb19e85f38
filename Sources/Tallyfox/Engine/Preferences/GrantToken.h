#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallyfox {

/// What tells one folder from another that stands at the same path later, and survives a reboot.
struct FolderIdentity {
    std::uint64_t inode = 0;
    std::int64_t birthSeconds = 0; ///< since 1970 (UTC); both parts are 0 where the file system keeps no birth time
    std::uint32_t birthNanoseconds = 0;

    friend bool operator==(const FolderIdentity&, const FolderIdentity&) = default;
};

/// The content of a grant's token: text lines that carry version, identity and checksum, then the bytes of the path.
struct GrantToken {
    std::string path; ///< absolute; any bytes but NUL, in no particular encoding
    FolderIdentity identity;

    [[nodiscard]] std::string encoded() const;

    /// The content of a token, whatever the bytes; nothing unless they are exactly what `encoded` gives.
    static std::optional<GrantToken> decoded(std::string_view token);

    friend bool operator==(const GrantToken&, const GrantToken&) = default;
};

} // namespace tallyfox
