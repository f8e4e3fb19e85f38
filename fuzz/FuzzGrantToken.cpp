#include "Tallyfox/Engine/Preferences/GrantToken.h"
#include "Tallyfox/Engine/Preferences/HomeFolderGrant.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using namespace tallyfox;

void require(bool isSo)
{
    if (!isSo)
        std::abort();
}

/// Whatever is accepted is exactly what would be written for it.
void checkDecoding(std::string_view bytes)
{
    const auto content = GrantToken::decoded(bytes);
    require(!content || content->encoded() == bytes);
    if (!content)
        require(std::holds_alternative<HomeFolderGrant::Absent>(HomeFolderGrant::resolve(bytes)));
}

/// A path of any bytes comes back, and one changed bit anywhere is found: the checksum is out of a fuzzer's reach, so
/// that it would hardly ever get behind it by itself.
void checkEncoding(std::string_view bytes)
{
    constexpr std::size_t longestPath = 4'000;
    if (bytes.size() < 2 || bytes.size() > longestPath || bytes.find('\0') != std::string_view::npos)
        return;
    GrantToken content;
    content.path = '/' + std::string{bytes};
    content.identity.inode = static_cast<unsigned char>(bytes[0]);
    content.identity.birthSeconds = -static_cast<std::int64_t>(bytes.size());
    std::string token = content.encoded();
    require(GrantToken::decoded(token) == content);
    const std::size_t place = std::size_t{static_cast<unsigned char>(bytes[1])} * bytes.size() % token.size();
    token[place] = static_cast<char>(token[place] ^ 1);
    require(!GrantToken::decoded(token));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes{data, data + size};
    checkDecoding(bytes);
    checkEncoding(bytes);
    return 0;
}
