#include "Tallyfox/Platform/AccountHome.h"

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

TEST(AccountHome, absoluteHomeOfTheEnvironmentIsTaken)
{
    ASSERT_EQ(setenv("HOME", "/somewhere/else", 1), 0);
    EXPECT_EQ(accountHome(), "/somewhere/else");
}

TEST(AccountHome, relativeOrEmptyHomeFallsBackToTheAccountDatabase)
{
    for (const char* const home : {"", "ada", "./ada", "~"}) {
        ASSERT_EQ(setenv("HOME", home, 1), 0);
        EXPECT_EQ(accountHome(), homeInDatabase()) << home;
    }
}

TEST(AccountHome, missingHomeFallsBackToTheAccountDatabase)
{
    ASSERT_EQ(unsetenv("HOME"), 0);
    EXPECT_EQ(accountHome(), homeInDatabase());
}

} // namespace tallyfox::test
