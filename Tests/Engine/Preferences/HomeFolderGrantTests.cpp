#include "Support/ScratchFolder.h"
#include "Tallyfox/Engine/Preferences/GrantToken.h"
#include "Tallyfox/Engine/Preferences/HomeFolderGrant.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace tallyfox::test {

namespace {

using namespace HomeFolderGrant;

std::string tokenOf(const std::filesystem::path& folder)
{
    return std::get<std::string>(token(folder));
}

/// The location, or the name of the other outcome.
std::string outcome(std::string_view token)
{
    const Resolution resolution = resolve(token);
    if (const auto* location = std::get_if<Location>(&resolution))
        return location->path.native();
    return std::holds_alternative<Stale>(resolution) ? "stale" : "absent";
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

TEST_F(HomeFolderGrantTest, folderReachedThroughALinkIsGrantedUnderItsOwnPath)
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

TEST_F(HomeFolderGrantTest, namesThatAreNoTextAreGrantedToo)
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

TEST_F(HomeFolderGrantTest, folderThatComesBackIsTheLocationAgain)
{
    const auto folder = makeFolder("home");
    const std::string granted = tokenOf(folder);
    std::filesystem::rename(folder, folder.parent_path() / "moved");
    EXPECT_EQ(outcome(granted), "absent");
    std::filesystem::rename(folder.parent_path() / "moved", folder);
    EXPECT_EQ(outcome(granted), folder);
}

TEST_F(HomeFolderGrantTest, sameInodeWithAnotherBirthTimeIsStale)
{
    const auto folder = makeFolder("home");
    auto content = GrantToken::decoded(tokenOf(folder)).value();
    content.identity.birthNanoseconds += 1;
    EXPECT_EQ(outcome(content.encoded()), "stale");
}

TEST_F(HomeFolderGrantTest, tokenOfWhatIsNoFolderIsTheSystemsError)
{
    const auto folder = makeFolder("home");
    writeFile(folder / "file", "");
    const auto errorOf = [](const std::filesystem::path& path) {
        return std::get<std::error_code>(token(path)).default_error_condition();
    };
    EXPECT_EQ(errorOf(folder / "file"), std::errc::not_a_directory);
    EXPECT_EQ(errorOf(folder / "missing"), std::errc::no_such_file_or_directory);
    EXPECT_TRUE(errorOf(""));
}

TEST_F(HomeFolderGrantTest, everySingleDamagedByteMakesTheTokenAbsent)
{
    std::string damaged = tokenOf(makeFolder("home"));
    for (char& byte : damaged) {
        for (const char flip : {'\x01', '\x20', '\x80'}) {
            byte = static_cast<char>(byte ^ flip);
            EXPECT_EQ(outcome(damaged), "absent") << damaged;
            byte = static_cast<char>(byte ^ flip);
        }
    }
}

TEST_F(HomeFolderGrantTest, everyTruncatedOrExtendedTokenIsAbsent)
{
    const std::string granted = tokenOf(makeFolder("home"));
    for (std::size_t length = 0; length < granted.size(); ++length)
        EXPECT_EQ(outcome(granted.substr(0, length)), "absent") << length;
    EXPECT_EQ(outcome(granted + "/"), "absent");
    EXPECT_EQ(outcome('\n' + granted), "absent");
}

TEST_F(HomeFolderGrantTest, unknownVersionIsAbsent)
{
    std::string granted = tokenOf(makeFolder("home"));
    ASSERT_EQ(granted.substr(0, 24), "tallyfox-folder-grant 1\n");
    granted[22] = '2';
    EXPECT_EQ(outcome(granted), "absent");
}

TEST(GrantToken, comesBackFromItsEncodingWithExtremeNumbers)
{
    for (const FolderIdentity& identity : {FolderIdentity{}, FolderIdentity{UINT64_MAX, INT64_MIN, UINT32_MAX}}) {
        const GrantToken content{.path = "/a\nb", .identity = identity};
        EXPECT_EQ(GrantToken::decoded(content.encoded()), content);
    }
}

TEST(GrantToken, pathThatIsRelativeEmptyOrHoldsNulIsRefused)
{
    for (const std::string& path : {std::string{}, std::string{"home"}, std::string{"/a\0b", 4}})
        EXPECT_EQ(GrantToken::decoded(GrantToken{.path = path, .identity = {}}.encoded()), std::nullopt);
}

TEST(GrantToken, hugeTokenIsRefused)
{
    const GrantToken content{.path = '/' + std::string(10'000, 'x'), .identity = {}};
    EXPECT_EQ(GrantToken::decoded(content.encoded()), std::nullopt);
}

TEST(GrantToken, otherWaysToWriteTheSameNumbersAreRefused)
{
    std::string token = GrantToken{.path = "/", .identity = {}}.encoded();
    token.insert(token.find("inode ") + 6, "0");
    EXPECT_EQ(GrantToken::decoded(token), std::nullopt);
}

} // namespace tallyfox::test
