#include "Support/ScratchFolder.h"
#include "Tallyfox/UserDefaults.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace tallyfox::test {

namespace {

class UserDefaultsTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path file() const
    {
        return m_folder.path() / "config" / "tallyfox" / "tallyfox.ini";
    }

    static mode_t mode(const std::filesystem::path& path)
    {
        struct stat status { };
        return stat(path.c_str(), &status) == 0 ? status.st_mode & 0777U : 0;
    }

private:
    ScratchFolder m_folder;
};

/// As long as it lives no file grows beyond 4 KiB, not even an administrator's.
class FullDisk {
public:
    FullDisk()
        : m_handlerBefore(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_limitBefore);
        rlimit limit = m_limitBefore;
        limit.rlim_cur = 4096;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_limitBefore);
        std::signal(SIGXFSZ, m_handlerBefore);
    }

    [[nodiscard]] std::string tooMuch() const
    {
        return std::string(m_limitBefore.rlim_cur > 8192 ? 8192 : 0, 'x');
    }

private:
    void (*m_handlerBefore)(int);
    rlimit m_limitBefore{};
};

std::string everyByte()
{
    std::string bytes;
    for (int value = 0; value < 256; ++value)
        bytes += static_cast<char>(value);
    return bytes + bytes;
}

} // namespace

TEST_F(UserDefaultsTest, nothingStoredIsNoBookmarkAndFiveMinutesAndNothingIsWritten)
{
    const UserDefaults defaults{file()};
    EXPECT_EQ(defaults.homeFolderBookmark(), std::nullopt);
    EXPECT_EQ(defaults.refreshMinutes(), 5);
    EXPECT_FALSE(std::filesystem::exists(file().parent_path().parent_path()));
}

TEST_F(UserDefaultsTest, bookmarkOfAnyBytesComesBackInAnotherObject)
{
    for (const std::string& token : {std::string{"plain"}, std::string{}, everyByte(), std::string{"@Variant(\0)", 11}})
    {
        ASSERT_TRUE(UserDefaults{file()}.setHomeFolderBookmark(token));
        EXPECT_EQ(UserDefaults{file()}.homeFolderBookmark(), token);
    }
}

TEST_F(UserDefaultsTest, newFileAndFoldersAreForTheUserAlone)
{
    ASSERT_TRUE(UserDefaults{file()}.setHomeFolderBookmark("token"));
    EXPECT_EQ(mode(file()), 0600U);
    EXPECT_EQ(mode(file().parent_path()), 0700U);
    EXPECT_EQ(mode(file().parent_path().parent_path()), 0700U);
}

TEST_F(UserDefaultsTest, fileThatOthersCouldReadIsPrivateAfterASet)
{
    writeFile(file(), "[General]\nrefreshMinutes=15\n");
    std::filesystem::permissions(file(), std::filesystem::perms{0644});
    ASSERT_TRUE(UserDefaults{file()}.setHomeFolderBookmark("token"));
    EXPECT_EQ(mode(file()), 0600U);
}

TEST_F(UserDefaultsTest, settingOneKeyKeepsTheOthers)
{
    writeFile(file(), "[General]\nrefreshMinutes=15\nlaterKey=kept\n");
    ASSERT_TRUE(UserDefaults{file()}.setHomeFolderBookmark("token"));
    EXPECT_EQ(UserDefaults{file()}.refreshMinutes(), 15);
    EXPECT_NE(readFile(file()).find("laterKey=kept"), std::string::npos);
}

TEST_F(UserDefaultsTest, minutesThatAreZeroOrNoNumberAreFive)
{
    const std::pair<const char*, std::int64_t> cases[]{{"0", 5}, {"soon", 5}, {"", 5}, {"30", 30}, {"-3", -3}};
    for (const auto& [text, minutes] : cases) {
        const auto own = file().parent_path() / text / "tallyfox.ini"; // contents are cached for each file
        writeFile(own, std::string{"[General]\nrefreshMinutes="} + text + '\n');
        EXPECT_EQ(UserDefaults{own}.refreshMinutes(), minutes) << text;
    }
}

TEST_F(UserDefaultsTest, damagedFileReadsAsNothingStored)
{
    writeFile(file(), everyByte() + "\n[[[\n\xff\xfe=\n");
    EXPECT_EQ(UserDefaults{file()}.homeFolderBookmark(), std::nullopt);
    EXPECT_EQ(UserDefaults{file()}.refreshMinutes(), 5);
}

TEST_F(UserDefaultsTest, fileThatCannotBeMadeIsAFailure)
{
    writeFile(file().parent_path(), "a file where the folder should be");
    EXPECT_FALSE(UserDefaults{file()}.setHomeFolderBookmark("token"));
    EXPECT_EQ(UserDefaults{file()}.homeFolderBookmark(), std::nullopt);
}

TEST_F(UserDefaultsTest, failedWriteKeepsWhatWasStoredBefore)
{
    ASSERT_TRUE(UserDefaults{file()}.setHomeFolderBookmark("before"));
    {
        const FullDisk disk;
        EXPECT_FALSE(UserDefaults{file()}.setHomeFolderBookmark(disk.tooMuch()));
        EXPECT_EQ(UserDefaults{file()}.homeFolderBookmark(), "before");
    }
    EXPECT_EQ(UserDefaults{file()}.homeFolderBookmark(), "before");
    EXPECT_NE(readFile(file()).find("before"), std::string::npos);
}

TEST_F(UserDefaultsTest, failedFirstWriteLeavesNothingStored)
{
    {
        const FullDisk disk;
        EXPECT_FALSE(UserDefaults{file()}.setHomeFolderBookmark(disk.tooMuch()));
    }
    EXPECT_EQ(UserDefaults{file()}.homeFolderBookmark(), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(UserDefaultsTest, writesLeaveNothingButTheFile)
{
    ASSERT_TRUE(UserDefaults{file()}.setHomeFolderBookmark("token"));
    {
        const FullDisk disk;
        EXPECT_FALSE(UserDefaults{file()}.setHomeFolderBookmark(disk.tooMuch()));
    }
    for (const auto& entry : std::filesystem::directory_iterator{file().parent_path()})
        EXPECT_EQ(entry.path(), file());
}

TEST_F(UserDefaultsTest, linkToTheFileStaysALink)
{
    const auto target = file().parent_path() / "elsewhere" / "kept.ini";
    writeFile(target, "[General]\nrefreshMinutes=15\n");
    std::filesystem::create_symlink(target, file());
    ASSERT_TRUE(UserDefaults{file()}.setHomeFolderBookmark("token"));
    EXPECT_TRUE(std::filesystem::is_symlink(file()));
    EXPECT_EQ(UserDefaults{target}.homeFolderBookmark(), "token");
    EXPECT_EQ(UserDefaults{target}.refreshMinutes(), 15);
}

TEST_F(UserDefaultsTest, threadsMayReadWhileAnotherWrites)
{
    UserDefaults defaults{file()};
    ASSERT_TRUE(defaults.setHomeFolderBookmark("first"));
    std::vector<std::thread> readers;
    for (int reader = 0; reader < 2; ++reader) {
        readers.emplace_back([this] {
            for (int round = 0; round < 50; ++round)
                EXPECT_TRUE(UserDefaults{file()}.homeFolderBookmark().has_value());
        });
    }
    for (int round = 0; round < 20; ++round)
        EXPECT_TRUE(UserDefaults{file()}.setHomeFolderBookmark(std::to_string(round)));
    for (std::thread& reader : readers)
        reader.join();
}

TEST_F(UserDefaultsTest, standardPathFollowsTheConfigurationFolderWhenThatIsAbsolute)
{
    ASSERT_EQ(setenv("HOME", "/home/ada", 1), 0);
    ASSERT_EQ(setenv("XDG_CONFIG_HOME", "/configuration", 1), 0);
    EXPECT_EQ(UserDefaults::standardPath(), "/configuration/tallyfox/tallyfox.ini");
    for (const char* const noFolder : {"", "relative"}) {
        ASSERT_EQ(setenv("XDG_CONFIG_HOME", noFolder, 1), 0);
        EXPECT_EQ(UserDefaults::standardPath(), "/home/ada/.config/tallyfox/tallyfox.ini");
    }
    ASSERT_EQ(unsetenv("XDG_CONFIG_HOME"), 0);
    EXPECT_EQ(UserDefaults::standardPath(), "/home/ada/.config/tallyfox/tallyfox.ini");
}

} // namespace tallyfox::test
