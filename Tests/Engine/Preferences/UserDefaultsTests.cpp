#include "Support/ScratchFolder.h"
#include "Support/Unprivileged.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"

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

/// During its lifetime no file can grow beyond 4 KiB, not even for root.
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

TEST_F(UserDefaultsTest, missingFileReadsAsInitialValuesAndIsNotWritten)
{
    const UserDefaults defaults{file()};
    EXPECT_EQ(defaults.homeFolderBookmark(), std::nullopt);
    EXPECT_EQ(defaults.preferences().refreshMinutes, 5);
    EXPECT_FALSE(std::filesystem::exists(file().parent_path().parent_path()));
}

TEST_F(UserDefaultsTest, bookmarkOfAnyBytesIsReadByAnotherObject)
{
    for (const std::string& token : {std::string{"plain"}, std::string{}, everyByte(), std::string{"@Variant(\0)", 11}})
    {
        ASSERT_TRUE(UserDefaults{file()}.setHomeFolderBookmark(token));
        EXPECT_EQ(UserDefaults{file()}.homeFolderBookmark(), token);
    }
}

TEST_F(UserDefaultsTest, newFileAndFoldersArePrivate)
{
    ASSERT_TRUE(UserDefaults{file()}.setHomeFolderBookmark("token"));
    EXPECT_EQ(mode(file()), 0600U);
    EXPECT_EQ(mode(file().parent_path()), 0700U);
    EXPECT_EQ(mode(file().parent_path().parent_path()), 0700U);
}

TEST_F(UserDefaultsTest, fileReadableByOthersIsPrivateAfterSetting)
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
    EXPECT_EQ(UserDefaults{file()}.preferences().refreshMinutes, 15);
    EXPECT_NE(readFile(file()).find("laterKey=kept"), std::string::npos);
}

TEST_F(UserDefaultsTest, minutesThatAreZeroOrNotANumberReadAsFive)
{
    const std::pair<const char*, std::int64_t> cases[]{{"0", 5},
                                                       {"soon", 5},
                                                       {"", 5},
                                                       {"30", 30},
                                                       {"-3", -3},
                                                       {"7.5", 5},
                                                       {"153722867280912930", 153722867280912930},
                                                       {"153722867280912931", 5},
                                                       {"99999999999999999999", 5}};
    for (const auto& [text, minutes] : cases) {
        writeFile(file(), std::string{"[General]\nrefreshMinutes="} + text + '\n');
        EXPECT_EQ(UserDefaults{file()}.preferences().refreshMinutes, minutes) << text;
    }
}

TEST_F(UserDefaultsTest, damagedFileReadsAsNothingStored)
{
    writeFile(file(), everyByte() + "\n[[[\n\xff\xfe=\n");
    EXPECT_EQ(UserDefaults{file()}.homeFolderBookmark(), std::nullopt);
    EXPECT_EQ(UserDefaults{file()}.preferences().refreshMinutes, 5);
}

TEST_F(UserDefaultsTest, settingFailsWhereTheFileCannotBeCreated)
{
    writeFile(file().parent_path(), "a file where the folder should be");
    EXPECT_FALSE(UserDefaults{file()}.setHomeFolderBookmark("token"));
    EXPECT_EQ(UserDefaults{file()}.homeFolderBookmark(), std::nullopt);
}

TEST_F(UserDefaultsTest, failedWriteKeepsTheOldValue)
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

TEST_F(UserDefaultsTest, symbolicLinkToTheFileIsKept)
{
    const auto target = file().parent_path() / "elsewhere" / "kept.ini";
    writeFile(target, "[General]\nrefreshMinutes=15\n");
    std::filesystem::create_symlink(target, file());
    ASSERT_TRUE(UserDefaults{file()}.setHomeFolderBookmark("token"));
    EXPECT_TRUE(std::filesystem::is_symlink(file()));
    EXPECT_EQ(UserDefaults{target}.homeFolderBookmark(), "token");
    EXPECT_EQ(UserDefaults{target}.preferences().refreshMinutes, 15);
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

TEST_F(UserDefaultsTest, absentKeysReadAsInitialValuesAndNothingIsWritten)
{
    const UserDefaults defaults{file()};
    EXPECT_EQ(defaults.preferences(), Preferences{});
    EXPECT_FALSE(defaults.preferences().launchAtLogin);
    EXPECT_FALSE(defaults.preferences().showDockIcon);
    EXPECT_FALSE(defaults.preferences().showAccountEmails);
    EXPECT_TRUE(defaults.preferences().rankingPrivate);
    EXPECT_FALSE(defaults.preferences().notificationsEnabled);
    EXPECT_EQ(defaults.preferences().claudeThreshold, 20.0);
    EXPECT_EQ(defaults.preferences().codexThreshold, 20.0);
    EXPECT_FALSE(defaults.preferences().newsNotifications);
    EXPECT_FALSE(defaults.preferences().requestsShortcut);
    EXPECT_FALSE(std::filesystem::exists(file().parent_path().parent_path()));
}

/// One preference: how it is set, its line in the file, and the resulting values.
struct Setting {
    bool (*set)(UserDefaults&);
    const char* line;
    Preferences expected;
};

const Setting settings[]{
    {[](UserDefaults& it) { return it.set(&Preferences::refreshMinutes, 15); },
     "refreshMinutes=15\n",
     {.refreshMinutes = 15}},
    {[](UserDefaults& it) { return it.set(&Preferences::launchAtLogin, true); },
     "launchAtLogin=true\n",
     {.launchAtLogin = true}},
    {[](UserDefaults& it) { return it.set(&Preferences::showDockIcon, true); },
     "showDockIcon=true\n",
     {.showDockIcon = true}},
    {[](UserDefaults& it) { return it.set(&Preferences::showAccountEmails, true); },
     "showAccountEmails=true\n",
     {.showAccountEmails = true}},
    {[](UserDefaults& it) { return it.set(&Preferences::rankingPrivate, false); },
     "rankingPrivate=false\n",
     {.rankingPrivate = false}},
    {[](UserDefaults& it) { return it.set(&Preferences::notificationsEnabled, true); },
     "notificationsEnabled=true\n",
     {.notificationsEnabled = true}},
    {[](UserDefaults& it) { return it.set(&Preferences::claudeThreshold, 5); },
     "claudeThreshold=5\n",
     {.claudeThreshold = 5}},
    {[](UserDefaults& it) { return it.set(&Preferences::codexThreshold, 95); },
     "codexThreshold=95\n",
     {.codexThreshold = 95}},
    {[](UserDefaults& it) { return it.set(&Preferences::newsNotifications, true); },
     "newsNotifications=true\n",
     {.newsNotifications = true}},
    {[](UserDefaults& it) { return it.set(&Preferences::requestsShortcut, true); },
     "requestsShortcut=true\n",
     {.requestsShortcut = true}},
};

TEST_F(UserDefaultsTest, eachPreferenceIsStoredUnderItsOwnKeyOnly)
{
    for (const Setting& setting : settings) {
        std::filesystem::remove(file());
        UserDefaults defaults{file()};
        ASSERT_TRUE(setting.set(defaults));
        EXPECT_EQ(UserDefaults{file()}.preferences(), setting.expected) << setting.line;
        EXPECT_EQ(readFile(file()), std::string{"[General]\n"} + setting.line);
    }
}

TEST_F(UserDefaultsTest, settingAllInTurnLosesNone)
{
    UserDefaults defaults{file()};
    ASSERT_TRUE(defaults.setHomeFolderBookmark("token"));
    for (const Setting& setting : settings)
        ASSERT_TRUE(setting.set(defaults));
    const Preferences all{.refreshMinutes = 15,
                          .launchAtLogin = true,
                          .showDockIcon = true,
                          .showAccountEmails = true,
                          .rankingPrivate = false,
                          .notificationsEnabled = true,
                          .claudeThreshold = 5,
                          .codexThreshold = 95,
                          .newsNotifications = true,
                          .requestsShortcut = true};
    EXPECT_EQ(UserDefaults{file()}.preferences(), all);
    EXPECT_EQ(UserDefaults{file()}.homeFolderBookmark(), "token");
}

TEST_F(UserDefaultsTest, thresholdBetweenStepsIsKeptAndOneOutOfRangeReadsAsInitial)
{
    const std::pair<const char*, double> cases[]{{"22.5", 22.5}, {"5", 5},    {"95", 95},  {"4.9", 20},  {"96", 20},
                                                 {"nan", 20},    {"inf", 20}, {"-20", 20}, {"many", 20}, {"20%", 20}};
    for (const auto& [text, percent] : cases) {
        writeFile(file(), std::string{"[General]\nclaudeThreshold="} + text + '\n');
        EXPECT_EQ(UserDefaults{file()}.preferences().claudeThreshold, percent) << text;
    }
}

TEST_F(UserDefaultsTest, damagedValuesFallBackIndividually)
{
    writeFile(file(), "[General]\nrefreshMinutes=soon\nlaunchAtLogin=1\nrankingPrivate=perhaps\nclaudeThreshold=35\n");
    EXPECT_EQ(UserDefaults{file()}.preferences(), (Preferences{.launchAtLogin = true, .claudeThreshold = 35}));
}

TEST_F(UserDefaultsTest, settingInADamagedFileRepairsItAndKeepsABackup)
{
    const std::string damaged =
        "[General]\nrefreshMinutes=15\n\x01\xff junk\nrankingPrivate=perhaps\nlaterKey=kept\n[[[\n";
    writeFile(file(), damaged);
    ASSERT_TRUE(UserDefaults{file()}.set(&Preferences::launchAtLogin, true));
    EXPECT_EQ(readFile(file()), "[General]\nrefreshMinutes=15\nlaterKey=kept\nlaunchAtLogin=true\n");
    const std::filesystem::path backup = file().native() + ".backup";
    EXPECT_EQ(readFile(backup), damaged);
    EXPECT_EQ(mode(backup), 0600U);

    ASSERT_TRUE(UserDefaults{file()}.set(&Preferences::launchAtLogin, false)); // nothing to repair, so no backup
    EXPECT_EQ(readFile(backup), damaged);
}

TEST_F(UserDefaultsTest, undamagedFileGetsNoBackup)
{
    writeFile(file(), "; a comment\n\n[General]\nrefreshMinutes=15\n[window]\nsize=@Size(1 2)\n");
    ASSERT_TRUE(UserDefaults{file()}.set(&Preferences::launchAtLogin, true));
    EXPECT_EQ(readFile(file()),
              "; a comment\n\n[General]\nrefreshMinutes=15\nlaunchAtLogin=true\n[window]\nsize=@Size(1 2)\n");
    EXPECT_FALSE(std::filesystem::exists(file().native() + ".backup"));
}

TEST_F(UserDefaultsTest, folderOrPipeReadsAsNothingStoredAndIsUnchanged)
{
    std::filesystem::create_directories(file()); // a folder
    EXPECT_EQ(UserDefaults{file()}.preferences(), Preferences{});
    EXPECT_FALSE(UserDefaults{file()}.set(&Preferences::launchAtLogin, true));
    EXPECT_TRUE(std::filesystem::is_directory(file()));

    std::filesystem::remove(file());
    ASSERT_EQ(mkfifo(file().c_str(), 0600), 0); // nothing ever writes into this pipe
    EXPECT_EQ(UserDefaults{file()}.preferences(), Preferences{});
    EXPECT_FALSE(UserDefaults{file()}.set(&Preferences::launchAtLogin, true));
    EXPECT_TRUE(std::filesystem::is_fifo(file()));
}

TEST_F(UserDefaultsTest, hugeFileReadsAsNothingStoredAndIsUnchanged)
{
    writeFile(file(), "[General]\nrefreshMinutes=15\n" + std::string(1'048'576, ';'));
    const auto size = std::filesystem::file_size(file());
    EXPECT_EQ(UserDefaults{file()}.preferences().refreshMinutes, 5);
    EXPECT_FALSE(UserDefaults{file()}.set(&Preferences::launchAtLogin, true));
    EXPECT_EQ(std::filesystem::file_size(file()), size);
}

TEST_F(UserDefaultsTest, settingFailsInAReadOnlyFolderOrUnreadableFile)
{
    const auto folder = file().parent_path();
    writeFile(folder / "tallyfox.ini", "[General]\nrefreshMinutes=15\n");
    std::filesystem::permissions(folder, std::filesystem::perms{0555});
    std::filesystem::permissions(folder / "tallyfox.ini", std::filesystem::perms{0644});
    const auto readOnly = statusWithoutPrivileges(folder, [] {
        UserDefaults defaults{"tallyfox.ini"};
        return (defaults.set(&Preferences::launchAtLogin, true) ? 1 : 0)
            + (defaults.preferences().refreshMinutes == 15 ? 0 : 2);
    });
    EXPECT_TRUE(readOnly == 0 || !readOnly) << "status " << *readOnly;

    std::filesystem::permissions(folder, std::filesystem::perms{0777});
    std::filesystem::permissions(folder / "tallyfox.ini", std::filesystem::perms{0});
    const auto unreadable = statusWithoutPrivileges(folder, [] {
        UserDefaults defaults{"tallyfox.ini"};
        return (defaults.set(&Preferences::launchAtLogin, true) ? 1 : 0)
            + (defaults.preferences().refreshMinutes == 5 ? 0 : 2);
    });
    EXPECT_TRUE(unreadable == 0 || !unreadable) << "status " << *unreadable;
    EXPECT_EQ(std::filesystem::file_size(file()), 28U);
}

TEST_F(UserDefaultsTest, standardPathUsesAnAbsoluteConfigurationFolder)
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

TEST_F(UserDefaultsTest, grantCanBeStoredInADamagedFile)
{
    using namespace std::string_view_literals;
    for (const std::string_view damage :
         {"\\ninshMinutes=15\n"sv, "a\\\\b=1\n"sv, "[x\\]\ny=2\n"sv, "a=\"b\", \"c\"\0\1\n"sv,
          "a=@Variant(\\0\\0\\0\\x7f)\n"sv, "a=@Invalid()\n"sv, "a=\\xd800\n"sv, "=\n"sv, "[\n"sv, "\xFF\xFE\0\0"sv})
    {
        writeFile(file(), "refreshMinutes=15\n" + std::string{damage});
        UserDefaults defaults{file()};
        EXPECT_TRUE(defaults.setHomeFolderBookmark("token")) << testing::PrintToString(damage);
        EXPECT_EQ(UserDefaults{file()}.homeFolderBookmark(), "token") << testing::PrintToString(damage);
        EXPECT_EQ(UserDefaults{file()}.preferences().refreshMinutes, 15) << testing::PrintToString(damage);
    }
}

} // namespace tallyfox::test
