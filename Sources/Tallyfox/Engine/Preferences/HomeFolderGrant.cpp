#include "Tallyfox/Engine/Preferences/HomeFolderGrant.h"

#include "TallyfoxCore/Files/FileDescriptor.h"

#include <charconv>
#include <climits>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>

namespace tallyfox::HomeFolderGrant {

namespace {

constexpr std::string_view formatLine = "tallyfox-folder-grant 2\n";
constexpr std::string_view firstFormatLine = "tallyfox-folder-grant 1\n"; ///< has one line more, before the path
constexpr std::size_t maximumSize = PATH_MAX + 256; ///< bytes; the lines before the path need less than 200

/// What distinguishes a folder from another that has the same path later, and survives a reboot.
struct Identity {
    std::uint64_t inode = 0;
    std::int64_t birthSeconds = 0; ///< since 1970 (UTC); both parts are 0 where the file system keeps no birth time
    std::uint32_t birthNanoseconds = 0;

    friend bool operator==(const Identity&, const Identity&) = default;
};

struct Content {
    std::string path; ///< absolute; any bytes but NUL, in no particular encoding
    Identity identity;
};

std::string encode(const Content& content)
{
    const Identity& identity = content.identity;
    return std::string{formatLine} + "inode " + std::to_string(identity.inode) + "\nborn "
        + std::to_string(identity.birthSeconds) + ' ' + std::to_string(identity.birthNanoseconds) + '\n' + content.path;
}

/// Removes `text` from the front of the input; false when the input does not begin with it.
bool takeText(std::string_view& input, std::string_view text)
{
    if (!input.starts_with(text))
        return false;
    input.remove_prefix(text.size());
    return true;
}

/// Reads a decimal number from the front of the input.
template <typename Number> bool takeNumber(std::string_view& input, Number& number)
{
    const auto [end, error] = std::from_chars(input.data(), input.data() + input.size(), number);
    if (error != std::errc{})
        return false;
    input.remove_prefix(static_cast<std::size_t>(end - input.data()));
    return true;
}

bool takeIdentity(std::string_view& input, Identity& identity)
{
    return takeText(input, "inode ") && takeNumber(input, identity.inode) && takeText(input, "\nborn ")
        && takeNumber(input, identity.birthSeconds) && takeText(input, " ")
        && takeNumber(input, identity.birthNanoseconds) && takeText(input, "\n");
}

bool skipLine(std::string_view& input)
{
    const std::size_t end = input.find('\n');
    if (end == std::string_view::npos)
        return false;
    input.remove_prefix(end + 1);
    return true;
}

std::optional<Content> decode(std::string_view token)
{
    if (token.size() > maximumSize)
        return std::nullopt;
    const bool isFirstFormat = takeText(token, firstFormatLine);
    Content content;
    if (!isFirstFormat && !takeText(token, formatLine))
        return std::nullopt;
    if (!takeIdentity(token, content.identity) || (isFirstFormat && !skipLine(token)))
        return std::nullopt;
    if (!token.starts_with('/') || token.find('\0') != std::string_view::npos)
        return std::nullopt;
    content.path = token;
    return content;
}

/// Reads both values from one open folder, so that it cannot be replaced in between. O_PATH needs no permission to read
/// the folder: an unreadable one can be granted too.
std::optional<Identity> readIdentity(const std::filesystem::path& folder)
{
    const FileDescriptor handle{open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)};
    struct statx status { };
    if (!handle.isOpen() || statx(handle.get(), "", AT_EMPTY_PATH, STATX_INO | STATX_BTIME, &status) != 0)
        return std::nullopt;
    Identity identity{.inode = status.stx_ino};
    if ((status.stx_mask & STATX_BTIME) != 0) {
        identity.birthSeconds = status.stx_btime.tv_sec;
        identity.birthNanoseconds = status.stx_btime.tv_nsec;
    }
    return identity;
}

} // namespace

std::optional<std::string> makeToken(const std::filesystem::path& folder)
{
    std::error_code error;
    const std::filesystem::path canonical = std::filesystem::canonical(folder, error);
    const auto identity = error ? std::nullopt : readIdentity(canonical);
    return identity ? std::optional{encode({.path = canonical.native(), .identity = *identity})} : std::nullopt;
}

Resolution resolve(std::string_view token)
{
    const auto content = decode(token);
    const auto identity = content ? readIdentity(content->path) : std::nullopt;
    if (!identity)
        return Absent{};
    if (*identity != content->identity)
        return Stale{};
    return Location{content->path};
}

} // namespace tallyfox::HomeFolderGrant
