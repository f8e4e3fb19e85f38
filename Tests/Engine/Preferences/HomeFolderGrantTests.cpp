#include "Support/ScratchFolder.h"
#include "Tallyfox/Engine/Preferences/HomeFolderGrant.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace tallyfox::test {

namespace {

using namespace HomeFolderGrant;

constexpr std::string_view formatLine = "tallyfox-folder-grant 2\n";

std::string tokenOf(const std::filesystem::path& folder)
{
    return makeToken(folder).value();
}

/// The location, "stale" or "absent".
std::string outcome(std::string_view token)
{
    const Resolution resolution = resolve(token);
    if (const auto* location = std::get_if<Location>(&resolution))
        return location->path.native();
    return std::holds_alternative<Stale>(resolution) ? "stale" : "absent";
}

/// The same token in the first version, which had a checksum.
std::string firstVersion(std::string token)
{
    token.replace(0, formatLine.size(), "tallyfox-folder-grant 1\n");
    return token.insert(token.find("\n/") + 1, "checksum 0123456789abcdef\n");
}

class HomeFolderGrantTest : public testing::Test {
protected:
    std::filesystem::path makeFolder(const std::filesystem::path& name) const
    {
        std::filesystem::create_directory(m_folder.path() / name);
        return m_folder.path() / name;
    }

private:
    ScratchFolder m_folder;
};

} // namespace

TEST_F(HomeFolderGrantTest, grantedFolderIsTheLocation)
{
    const auto folder = makeFolder("home");
    EXPECT_EQ(outcome(tokenOf(folder)), folder);
}

TEST_F(HomeFolderGrantTest, folderReachedThroughALinkIsGrantedByItsCanonicalPath)
{
    const auto folder = makeFolder("home");
    const auto link = folder.parent_path() / "link";
    std::filesystem::create_directory_symlink(folder, link);
    const std::string granted = tokenOf(link / "." / ".." / "home");
    std::filesystem::remove(link);
    EXPECT_EQ(outcome(granted), folder);
}

TEST_F(HomeFolderGrantTest, contentsOfTheFolderMayChange)
{
    const auto folder = makeFolder("home");
    const std::string granted = tokenOf(folder);
    writeFile(folder / ".claude" / "projects" / "a.jsonl", "{}");
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    EXPECT_EQ(outcome(granted), folder);
}

TEST_F(HomeFolderGrantTest, namesOfArbitraryBytesCanBeGranted)
{
    for (const char* const name : {"\xff\xfe", "line\nfeed", "caf\xc3\xa9", " ", "checksum 0"}) {
        const auto folder = makeFolder(name);
        EXPECT_EQ(outcome(tokenOf(folder)), folder);
    }
}

TEST_F(HomeFolderGrantTest, rootFolderCanBeGranted)
{
    EXPECT_EQ(outcome(tokenOf("/")), "/");
}

TEST_F(HomeFolderGrantTest, removedFolderIsAbsent)
{
    const auto folder = makeFolder("home");
    const std::string granted = tokenOf(folder);
    std::filesystem::remove(folder);
    EXPECT_EQ(outcome(granted), "absent");
}

TEST_F(HomeFolderGrantTest, folderReplacedByAFileIsAbsent)
{
    const auto folder = makeFolder("home");
    const std::string granted = tokenOf(folder);
    std::filesystem::remove(folder);
    writeFile(folder, "");
    EXPECT_EQ(outcome(granted), "absent");
}

TEST_F(HomeFolderGrantTest, folderReplacedByAnotherIsStale)
{
    const auto folder = makeFolder("home");
    const std::string granted = tokenOf(folder);
    std::filesystem::rename(folder, folder.parent_path() / "moved");
    makeFolder("home");
    EXPECT_EQ(outcome(granted), "stale");
}

TEST_F(HomeFolderGrantTest, folderMovedBackIsTheLocationAgain)
{
    const auto folder = makeFolder("home");
    const std::string granted = tokenOf(folder);
    std::filesystem::rename(folder, folder.parent_path() / "moved");
    EXPECT_EQ(outcome(granted), "absent");
    std::filesystem::rename(folder.parent_path() / "moved", folder);
    EXPECT_EQ(outcome(granted), folder);
}

TEST_F(HomeFolderGrantTest, tokenNamesTheInodeTheBirthTimeAndThePath)
{
    const auto folder = makeFolder("home");
    struct statx status { };
    ASSERT_EQ(statx(AT_FDCWD, folder.c_str(), 0, STATX_INO | STATX_BTIME, &status), 0);
    const bool hasBirthTime = (status.stx_mask & STATX_BTIME) != 0;
    EXPECT_EQ(tokenOf(folder),
              std::string{formatLine} + "inode " + std::to_string(status.stx_ino) + "\nborn "
                  + std::to_string(hasBirthTime ? status.stx_btime.tv_sec : 0) + ' '
                  + std::to_string(hasBirthTime ? status.stx_btime.tv_nsec : 0) + '\n' + folder.native());
}

TEST_F(HomeFolderGrantTest, sameInodeWithAnotherBirthTimeIsStale)
{
    std::string granted = tokenOf(makeFolder("home"));
    const std::size_t digit = granted.find("\n/") - 1;
    granted[digit] = granted[digit] == '9' ? '0' : static_cast<char>(granted[digit] + 1);
    EXPECT_EQ(outcome(granted), "stale");
}

TEST_F(HomeFolderGrantTest, whatIsNotAFolderHasNoToken)
{
    const auto folder = makeFolder("home");
    writeFile(folder / "file", "");
    for (const std::filesystem::path& path : {folder / "file", folder / "missing", std::filesystem::path{}})
        EXPECT_EQ(makeToken(path), std::nullopt) << path;
}

TEST_F(HomeFolderGrantTest, tokenOfTheFirstVersionStillGrantsItsFolder)
{
    for (const char* const name : {"home", "checksum 0", "line\nfeed"}) {
        const auto folder = makeFolder(name);
        const std::string granted = firstVersion(tokenOf(folder));
        EXPECT_EQ(outcome(granted), folder);
        std::filesystem::rename(folder, folder.parent_path() / "moved");
        EXPECT_EQ(outcome(granted), "absent");
        makeFolder(name);
        EXPECT_EQ(outcome(granted), "stale");
        std::filesystem::remove(folder.parent_path() / "moved");
    }
    EXPECT_EQ(outcome("tallyfox-folder-grant 1\ninode 1\nborn 0 0\n/"), "absent") << "the checksum is missing";
}

TEST_F(HomeFolderGrantTest, noDamagedByteGrantsAFolder)
{
    std::string damaged = tokenOf(makeFolder("home"));
    for (char& byte : damaged) {
        for (const char flip : {'\x01', '\x20', '\x80'}) {
            byte = static_cast<char>(byte ^ flip);
            const std::string result = outcome(damaged);
            EXPECT_TRUE(result == "absent" || result == "stale") << damaged << '\n' << result;
            byte = static_cast<char>(byte ^ flip);
        }
    }
}

TEST_F(HomeFolderGrantTest, noTruncatedOrExtendedTokenGrantsAnotherFolder)
{
    const auto folder = makeFolder("home");
    const std::string granted = tokenOf(folder);
    for (std::size_t length = 0; length < granted.size(); ++length) {
        const std::string result = outcome(granted.substr(0, length));
        EXPECT_TRUE(result == "absent" || result == "stale") << length << '\n' << result;
    }
    EXPECT_EQ(outcome(granted + "x"), "absent");
    EXPECT_EQ(outcome(granted + std::string(1, '\0')), "absent");
    EXPECT_EQ(outcome('\n' + granted), "absent");
    EXPECT_EQ(outcome(granted + "/"), folder / "") << "another way to write the same path";
}

TEST_F(HomeFolderGrantTest, unknownVersionIsAbsent)
{
    std::string granted = tokenOf(makeFolder("home"));
    ASSERT_TRUE(granted.starts_with(formatLine));
    granted[granted.find('2')] = '3';
    EXPECT_EQ(outcome(granted), "absent");
}

TEST_F(HomeFolderGrantTest, extremeNumbersAreReadAndLargerOnesAreDamage)
{
    const std::string begin{formatLine};
    EXPECT_EQ(outcome(begin + "inode 18446744073709551615\nborn -9223372036854775808 4294967295\n/"), "stale");
    EXPECT_EQ(outcome(begin + "inode 18446744073709551616\nborn 0 0\n/"), "absent");
    EXPECT_EQ(outcome(begin + "inode 1\nborn 9223372036854775808 0\n/"), "absent");
    EXPECT_EQ(outcome(begin + "inode 1\nborn 0 4294967296\n/"), "absent");
    EXPECT_EQ(outcome(begin + "inode -1\nborn 0 0\n/"), "absent");
}

TEST_F(HomeFolderGrantTest, pathThatIsRelativeEmptyOrHoldsNulIsAbsent)
{
    const std::string granted = tokenOf("/");
    const std::string begin = granted.substr(0, granted.size() - 1);
    for (const std::string& path : {std::string{}, std::string{"."}, std::string{"/\0b", 3}})
        EXPECT_EQ(outcome(begin + path), "absent");
}

TEST_F(HomeFolderGrantTest, hugeTokenIsAbsent)
{
    EXPECT_EQ(outcome(tokenOf("/") + std::string(10'000, '/')), "absent");
}

} // namespace tallyfox::test
