#include "Tallyfox/Engine/Preferences/GrantToken.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QCryptographicHash>

#include <charconv>
#include <climits>

namespace tallyfox {

namespace {

constexpr std::string_view formatLine = "tallyfox-folder-grant 1\n";
constexpr std::size_t maximumSize = PATH_MAX + 256; ///< bytes; the header needs less than 200

std::string identityLines(const FolderIdentity& identity)
{
    return "inode " + std::to_string(identity.inode) + "\nborn " + std::to_string(identity.birthSeconds) + ' '
        + std::to_string(identity.birthNanoseconds) + '\n';
}

/// Finds damage, not forgery: whoever can write the preferences can also write a right checksum.
std::string checksumLine(std::string_view identityLines, std::string_view path)
{
    QCryptographicHash hash{QCryptographicHash::Sha256};
    for (const std::string_view part : {formatLine, identityLines, path})
        hash.addData(QByteArrayView{part.data(), static_cast<qsizetype>(part.size())});
    constexpr qsizetype hashedBytes = 8;
    return "checksum " + hash.result().first(hashedBytes).toHex().toStdString() + '\n';
}

/// Takes `text` from the front of the input.
bool takeText(std::string_view& input, std::string_view text)
{
    if (!input.starts_with(text))
        return false;
    input.remove_prefix(text.size());
    return true;
}

/// Takes a decimal number.
template <typename Number> bool takeNumber(std::string_view& input, Number& number)
{
    const auto [end, error] = std::from_chars(input.data(), input.data() + input.size(), number);
    if (error != std::errc{})
        return false;
    input.remove_prefix(static_cast<std::size_t>(end - input.data()));
    return true;
}

bool takeIdentity(std::string_view& input, FolderIdentity& identity)
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

bool isAbsolutePath(std::string_view path)
{
    return path.starts_with('/') && path.find('\0') == std::string_view::npos;
}

} // namespace

std::string GrantToken::encoded() const
{
    const std::string lines = identityLines(identity);
    return std::string{formatLine} + lines + checksumLine(lines, path) + path;
}

std::optional<GrantToken> GrantToken::decoded(std::string_view token)
{
    if (token.size() > maximumSize)
        return std::nullopt;
    std::string_view rest = token;
    GrantToken content;
    if (!takeText(rest, formatLine) || !takeIdentity(rest, content.identity) || !skipLine(rest)
        || !isAbsolutePath(rest))
        return std::nullopt;
    content.path = rest;
    // Comparing the whole instead of the checksum alone also refuses every other way to write the same numbers.
    return content.encoded() == token ? std::optional{content} : std::nullopt;
}

} // namespace tallyfox
