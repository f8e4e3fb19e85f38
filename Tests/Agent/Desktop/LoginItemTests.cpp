#include "Support/ScratchFolder.h"
#include "Tallyfox/Agent/Desktop/LoginItem.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tallyfox::test {
namespace {

class LoginItemTest : public testing::Test {
protected:
    LoginItemTest()
    {
        setenv("XDG_CONFIG_HOME", (m_folder.path() / "config").c_str(), 1);
        makeProgram(program());
    }

    ~LoginItemTest() override
    {
        unsetenv("XDG_CONFIG_HOME");
    }

    [[nodiscard]] std::filesystem::path program() const
    {
        return m_folder.path() / "bin" / "tallyfox";
    }
    [[nodiscard]] std::filesystem::path entry() const
    {
        return m_folder.path() / "config" / "autostart" / "org.tallyfox.tallyfox.desktop";
    }
    [[nodiscard]] std::unique_ptr<LoginItem> item() const
    {
        return makeLoginItem(program(), "org.tallyfox.tallyfox");
    }
    [[nodiscard]] std::string execLine() const
    {
        return "Exec=" + program().native() + "\n";
    }

    static void makeProgram(const std::filesystem::path& path)
    {
        writeFile(path, "#!/bin/sh\n");
        std::filesystem::permissions(path, std::filesystem::perms{0755});
    }

    void appendToEntry(const std::string& lines) const
    {
        const std::string before = readFile(entry());
        writeFile(entry(), before + lines);
    }

    [[nodiscard]] LoginItemStatus statusOf(const std::string& entryText) const
    {
        writeFile(entry(), entryText);
        return item()->status();
    }

private:
    ScratchFolder m_folder;
};

TEST_F(LoginItemTest, freshAccountIsNotRegisteredAndHasNoFolder)
{
    EXPECT_EQ(item()->status(), LoginItemStatus::notRegistered);
    EXPECT_TRUE(item()->unregisterItem());
    EXPECT_FALSE(std::filesystem::exists(entry().parent_path()));
}

TEST_F(LoginItemTest, registeringCreatesACompleteEntryAndUnregisteringRemovesIt)
{
    EXPECT_TRUE(item()->registerItem());
    EXPECT_EQ(readFile(entry()),
              "[Desktop Entry]\nType=Application\nName=Tallyfox\nIcon=org.tallyfox.tallyfox\n" + execLine() + "Try"
                  + execLine() + "X-Tallyfox-Created=true\n");
    EXPECT_EQ(item()->status(), LoginItemStatus::enabled);

    EXPECT_TRUE(item()->unregisterItem());
    EXPECT_EQ(item()->status(), LoginItemStatus::notRegistered);
    EXPECT_TRUE(std::filesystem::is_empty(entry().parent_path()));
}

TEST_F(LoginItemTest, programWithSpecialCharactersInItsPathIsFound)
{
    const auto difficult = program().parent_path() / "a b\"c\\d%e$f" / "tally fox";
    makeProgram(difficult);
    const auto own = makeLoginItem(difficult, "org.tallyfox.tallyfox");
    EXPECT_TRUE(own->registerItem());
    EXPECT_EQ(own->status(), LoginItemStatus::enabled);
    EXPECT_NE(readFile(entry()).find("a b\\\\\"c\\\\\\\\d%%e\\\\$f/tally fox\"\n"), std::string::npos)
        << readFile(entry());
}

TEST_F(LoginItemTest, switchInTheDesktopsSettingsRequiresApproval)
{
    for (const char* const line :
         {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n", "X-MATE-Autostart-enabled=false\n"})
    {
        ASSERT_TRUE(item()->registerItem());
        appendToEntry(line);
        const std::string switchedOff = readFile(entry());
        EXPECT_EQ(item()->status(), LoginItemStatus::requiresApproval) << line;
        EXPECT_FALSE(item()->registerItem()) << line;
        EXPECT_EQ(readFile(entry()), switchedOff);
        EXPECT_TRUE(item()->unregisterItem());
    }
}

TEST_F(LoginItemTest, enabledSwitchInTheDesktopsSettingsIsEnabled)
{
    ASSERT_TRUE(item()->registerItem());
    appendToEntry("Hidden=false\nX-GNOME-Autostart-enabled=true\nX-MATE-Autostart-enabled=true\n");
    EXPECT_EQ(item()->status(), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, entryOfAMissingProgramIsNotFound)
{
    const std::string group = "[Desktop Entry]\nType=Application\n";
    EXPECT_EQ(statusOf(group + "Exec=/no/such/program\n"), LoginItemStatus::notFound);
    EXPECT_EQ(statusOf(group + "Exec=noSuchProgramOfTallyfox --now\n"), LoginItemStatus::notFound);
    EXPECT_EQ(statusOf(group + execLine() + "TryExec=/no/such/program\n"), LoginItemStatus::notFound);
    EXPECT_EQ(statusOf(group + "Exec=" + program().parent_path().native() + "\n"), LoginItemStatus::notFound);
    EXPECT_EQ(statusOf(group), LoginItemStatus::notFound);
    EXPECT_EQ(statusOf("\x01\xff no entry"), LoginItemStatus::notFound);
    EXPECT_EQ(statusOf(group + "Exec=sh -c tallyfox\n"), LoginItemStatus::enabled);
    EXPECT_EQ(statusOf(group + execLine() + "TryExec=\n"), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, registeringUpdatesTheProgramAndKeepsOtherKeys)
{
    ASSERT_TRUE(item()->registerItem());
    appendToEntry("X-GNOME-Autostart-Delay=10\n# mine\nName[de]=Z\xC3\xA4hlfuchs\n");
    const auto moved = program().parent_path() / "moved" / "tallyfox";
    makeProgram(moved);
    std::filesystem::remove(program());
    const auto own = makeLoginItem(moved, "org.tallyfox.tallyfox");
    EXPECT_EQ(own->status(), LoginItemStatus::notFound);

    EXPECT_TRUE(own->registerItem());
    EXPECT_EQ(own->status(), LoginItemStatus::enabled);
    const std::string text = readFile(entry());
    EXPECT_NE(text.find("\nExec=" + moved.native() + "\nTryExec=" + moved.native() + "\n"), std::string::npos) << text;
    EXPECT_NE(text.find("X-GNOME-Autostart-Delay=10\n# mine\nName[de]=Z\xC3\xA4hlfuchs\n"), std::string::npos) << text;
    EXPECT_TRUE(own->unregisterItem());
    EXPECT_FALSE(std::filesystem::exists(entry()));
}

TEST_F(LoginItemTest, argumentsAddedByTheUserAreKept)
{
    const std::string own = "[Desktop Entry]\nType=Application\nName=Mine\nIcon=mine\nExec=" + program().native()
        + " --no-quota\nTryExec=" + program().native() + "\n";
    writeFile(entry(), own);
    EXPECT_TRUE(item()->registerItem());
    EXPECT_EQ(readFile(entry()), own);
}

TEST_F(LoginItemTest, foreignEntryIsHiddenAndShownButNeverRemoved)
{
    const std::string own =
        "# mine\n[Desktop Entry]\nType=Application\nName=Mine\nIcon=mine\n" + execLine() + "Try" + execLine();
    writeFile(entry(), own);
    EXPECT_TRUE(item()->unregisterItem());
    EXPECT_EQ(item()->status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(readFile(entry()), own + "Hidden=true\nX-Tallyfox-Hidden=true\n");
    EXPECT_TRUE(item()->unregisterItem());

    EXPECT_TRUE(item()->registerItem());
    EXPECT_EQ(item()->status(), LoginItemStatus::enabled);
    EXPECT_EQ(readFile(entry()), own);
}

TEST_F(LoginItemTest, entryShownAgainByTheDesktopIsEnabled)
{
    EXPECT_EQ(statusOf("[Desktop Entry]\n" + execLine() + "Hidden=false\nX-Tallyfox-Hidden=true\n"),
              LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, changingALinkedEntryKeepsTheLink)
{
    const auto target = program().parent_path() / "kept.desktop";
    writeFile(target, "[Desktop Entry]\nName=Mine\n");
    std::filesystem::create_directories(entry().parent_path());
    std::filesystem::create_symlink(target, entry());
    EXPECT_TRUE(item()->registerItem());
    EXPECT_TRUE(std::filesystem::is_symlink(entry()));
    EXPECT_NE(readFile(target).find(execLine()), std::string::npos);
}

TEST_F(LoginItemTest, registrationFailsWithoutAFolder)
{
    writeFile(entry().parent_path(), "a file where the folder should be");
    EXPECT_FALSE(item()->registerItem());
    EXPECT_EQ(item()->status(), LoginItemStatus::notRegistered);
    EXPECT_TRUE(item()->unregisterItem());
}

TEST_F(LoginItemTest, registrationOfAMissingProgramFails)
{
    const auto own = makeLoginItem("/no/such/program", "org.tallyfox.tallyfox");
    EXPECT_FALSE(own->registerItem());
    EXPECT_EQ(own->status(), LoginItemStatus::notFound);
}

} // namespace
} // namespace tallyfox::test
