#include "Tallyfox/Engine/System/SystemPaths.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace tallyfox::test {

namespace {

std::filesystem::path homeInDatabase()
{
    const passwd* const entry = getpwuid(getuid());
    return entry && entry->pw_dir[0] == '/' ? entry->pw_dir : "/";
}

} // namespace

TEST(SystemPaths, absoluteHomeVariableIsUsed)
{
    ASSERT_EQ(setenv("HOME", "/somewhere/else", 1), 0);
    EXPECT_EQ(accountHome(), "/somewhere/else");
}

TEST(SystemPaths, relativeOrEmptyHomeFallsBackToTheAccountDatabase)
{
    for (const char* const home : {"", "ada", "./ada", "~"}) {
        ASSERT_EQ(setenv("HOME", home, 1), 0);
        EXPECT_EQ(accountHome(), homeInDatabase()) << home;
    }
}

TEST(SystemPaths, missingHomeFallsBackToTheAccountDatabase)
{
    ASSERT_EQ(unsetenv("HOME"), 0);
    EXPECT_EQ(accountHome(), homeInDatabase());
}

TEST(SystemPaths, configurationFolderVariableIsUsedOnlyWhenAbsolute)
{
    ASSERT_EQ(setenv("HOME", "/home/ada", 1), 0);
    ASSERT_EQ(setenv("XDG_CONFIG_HOME", "/configuration", 1), 0);
    EXPECT_EQ(configurationFolder(), "/configuration");
    ASSERT_EQ(setenv("XDG_CONFIG_HOME", "relative", 1), 0);
    EXPECT_EQ(configurationFolder(), "/home/ada/.config");
    ASSERT_EQ(unsetenv("XDG_CONFIG_HOME"), 0);
    EXPECT_EQ(configurationFolder(), "/home/ada/.config");
}

} // namespace tallyfox::test
