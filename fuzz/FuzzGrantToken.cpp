/// The token of a granted folder, as any bytes and as a real token that was changed: it never grants a folder but the
/// one it was made for.

#include "FuzzSupport.h"
#include "Support/ScratchFolder.h"
#include "Tallyfox/Engine/Preferences/HomeFolderGrant.h"

#include <string>

using namespace tallyfox;

namespace {

/// What the token grants is what it says behind its last line.
void checkResolution(std::string_view token)
{
    const auto resolution = HomeFolderGrant::resolve(token);
    const auto* const location = std::get_if<HomeFolderGrant::Location>(&resolution);
    if (!location)
        return;
    require(location->path.is_absolute(), "a granted path is absolute");
    require(token.ends_with("\n" + location->path.native()), "a granted path is the one in the token");
}

/// Behind the numbers of a folder that exists, which a fuzzer does not find: any path, and one changed byte.
void checkRealToken(std::string_view bytes)
{
    static const test::ScratchFolder folder;
    static const std::string token = HomeFolderGrant::makeToken(folder.path()).value();
    const std::string withoutPath = token.substr(0, token.find("\n/") + 1);
    checkResolution(withoutPath + std::string{bytes});
    if (bytes.size() < 2)
        return;
    std::string changed = token;
    char& byte = changed[static_cast<unsigned char>(bytes[0]) % changed.size()];
    if (byte == bytes[1])
        return;
    byte = bytes[1];
    require(!std::holds_alternative<HomeFolderGrant::Location>(HomeFolderGrant::resolve(changed)),
            "a changed token grants nothing");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = textOf(data, size);
    checkResolution(bytes);
    checkRealToken(bytes);
    return 0;
}
