#include "Support/ScratchFolder.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tallyfox::test {

namespace {

/// Runs `action` in a new process, which exits with its result.
pid_t startProcess(const std::function<int()>& action)
{
    const pid_t process = fork();
    if (process == 0)
        _exit(action());
    return process;
}

int statusOf(pid_t process)
{
    int status = 0;
    return waitpid(process, &status, 0) == process && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::chrono::duration<double> durationOf(const std::function<void()>& action)
{
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::steady_clock::now() - begin;
}

/// Retries while another process has locked the file.
void setEventually(const std::function<bool()>& set)
{
    while (!set())
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
}

class UserDefaultsProcessTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path file() const
    {
        return m_folder.path() / "tallyfox.ini";
    }

    /// Sets two keys in turn to increasing numbers, until the process is killed.
    int setForever() const
    {
        UserDefaults defaults{file()};
        for (std::int64_t round = defaults.preferences().refreshMinutes;; ++round) {
            const bool isStored = defaults.set(&Preferences::refreshMinutes, round)
                && defaults.setHomeFolderBookmark(std::to_string(round) + std::string(3000, 'x'));
            if (!isStored)
                return 1;
        }
    }

    /// Kills a process that is setting keys, `time` after its start.
    void killAfter(std::chrono::duration<double> time) const
    {
        std::array<int, 2> ready{};
        ASSERT_EQ(pipe(ready.data()), 0);
        const pid_t child = startProcess([this, &ready] { return write(ready[1], "!", 1) == 1 ? setForever() : 2; });
        ASSERT_GT(child, 0);
        char byte = 0;
        EXPECT_EQ(read(ready[0], &byte, 1), 1);
        close(ready[0]);
        close(ready[1]);
        std::this_thread::sleep_for(time);
        EXPECT_EQ(kill(child, SIGKILL), 0);
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status)) << "exited with " << WEXITSTATUS(status);
    }

    /// Expects every line, and no other file but the draft that a killed process may leave behind.
    void expectIntact() const
    {
        const UserDefaults defaults{file()};
        const std::int64_t minutes = defaults.preferences().refreshMinutes;
        const auto expected = [](std::int64_t round) { return std::to_string(round) + std::string(3000, 'x'); };
        const auto bookmark = defaults.homeFolderBookmark();
        ASSERT_TRUE(bookmark.has_value());
        EXPECT_TRUE(*bookmark == expected(minutes) || *bookmark == expected(minutes - 1)) << "torn at " << minutes;
        EXPECT_NE(readFile(file()).find("laterKey=kept\n"), std::string::npos);
        for (const auto& entry : std::filesystem::directory_iterator{m_folder.path()})
            EXPECT_TRUE(entry.path() == file() || entry.path() == file().native() + ".new") << entry.path();
    }

private:
    ScratchFolder m_folder;
};

} // namespace

TEST_F(UserDefaultsProcessTest, processKilledAtAnyMomentLeavesTheFileIntact)
{
    writeFile(file(), "[General]\nlaterKey=kept\nrefreshMinutes=10\n");
    ASSERT_TRUE(UserDefaults{file()}.setHomeFolderBookmark("10" + std::string(3000, 'x')));
    std::mt19937 random{20251121}; // NOLINT(cert-msc51-cpp): the same delays in each run
    std::uniform_real_distribution<double> sets{0, 5};
    const auto timeOfASet =
        durationOf([this] { ASSERT_TRUE(UserDefaults{file()}.set(&Preferences::refreshMinutes, 10)); });
    for (int round = 0; round < 200 && !HasFailure(); ++round) {
        killAfter(sets(random) * timeOfASet);
        expectIntact();
    }
    EXPECT_GT(UserDefaults{file()}.preferences().refreshMinutes, 10) << "no process has set anything";
    ASSERT_TRUE(UserDefaults{file()}.set(&Preferences::launchAtLogin, true));
    EXPECT_FALSE(std::filesystem::exists(file().native() + ".new")) << "the draft of a dead process was not reused";
}

TEST_F(UserDefaultsProcessTest, concurrentProcessesKeepEachOthersValues)
{
    constexpr int rounds = 60;
    const pid_t first = startProcess([this] {
        UserDefaults defaults{file()};
        for (int round = 1; round <= rounds; ++round) {
            setEventually([&] { return defaults.set(&Preferences::refreshMinutes, round); });
            if (defaults.preferences().refreshMinutes != round)
                return 1;
        }
        return 0;
    });
    const pid_t second = startProcess([this] {
        UserDefaults defaults{file()};
        for (int round = 1; round <= rounds; ++round) {
            setEventually([&] { return defaults.setHomeFolderBookmark(std::to_string(round)); });
            if (defaults.homeFolderBookmark() != std::to_string(round))
                return 1;
        }
        return 0;
    });
    EXPECT_EQ(statusOf(first), 0);
    EXPECT_EQ(statusOf(second), 0);
    EXPECT_EQ(UserDefaults{file()}.preferences().refreshMinutes, rounds);
    EXPECT_EQ(UserDefaults{file()}.homeFolderBookmark(), std::to_string(rounds));
}

TEST_F(UserDefaultsProcessTest, processStoppedWhileSettingBlocksOthersOnlyBriefly)
{
    const std::filesystem::path draft = file().native() + ".new";
    const pid_t child = startProcess([this] { return setForever(); });
    ASSERT_GT(child, 0);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds{60};
    bool isInTheMiddle = false;
    while (!isInTheMiddle && std::chrono::steady_clock::now() < deadline) {
        ::kill(child, SIGSTOP);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, WUNTRACED), child);
        isInTheMiddle = std::filesystem::exists(draft);
        if (!isInTheMiddle)
            ::kill(child, SIGCONT);
        std::this_thread::sleep_for(std::chrono::microseconds{300});
    }
    ASSERT_TRUE(isInTheMiddle);
    const std::string before = readFile(file());
    const bool isStored =
        UserDefaults{file()}.set(&Preferences::launchAtLogin, true); // false if the child already holds the lock
    EXPECT_TRUE(isStored ? UserDefaults{file()}.preferences().launchAtLogin : readFile(file()) == before);
    ::kill(child, SIGKILL);
    EXPECT_EQ(statusOf(child), -1);
    EXPECT_TRUE(UserDefaults{file()}.set(&Preferences::launchAtLogin, true));
}

} // namespace tallyfox::test
