#include "Support/FakeCodexFolder.h"
#include "Support/ProcessTable.h"
#include "Tallyfox/Engine/Quota/ChildProcess.h"
#include "Tallyfox/Engine/Quota/ChildReaper.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>

namespace tallyfox::test {

namespace {

using namespace std::chrono_literals;

/// Starts children without pipes.
class ChildStarter {
public:
    std::variant<pid_t, std::error_code> spawn(const std::filesystem::path& executable)
    {
        return spawnChild(executable, "app-server", std::get<Pipe>(m_input).reader, std::get<Pipe>(m_output).writer);
    }

    ChildReaper::Child start(ChildReaper& reaper, const FakeCodexFolder& fake)
    {
        auto started = reaper.start([&] { return spawn(fake.executable()); });
        return std::get<ChildReaper::Child>(std::move(started));
    }

    /// Continues a fake that waits for requests.
    void closeInput()
    {
        std::get<Pipe>(m_input).writer = FileDescriptor{};
    }

private:
    std::variant<Pipe, std::error_code> m_input = Pipe::open();
    std::variant<Pipe, std::error_code> m_output = Pipe::open();
};

} // namespace

TEST(ChildReaper, childLeadsItsOwnSessionAndGroup)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "silent"};
    ChildStarter starter;
    ChildReaper reaper;
    const auto child = starter.start(reaper, fake);
    EXPECT_EQ(fake.processId(), child.processId());
    EXPECT_EQ(getpgid(child.processId()), child.processId());
    EXPECT_EQ(getsid(child.processId()), child.processId());
}

TEST(ChildReaper, releasedChildEndsInTheBackground)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "silent"};
    ChildStarter starter;
    ChildReaper reaper;
    pid_t leader = 0;
    {
        const auto child = starter.start(reaper, fake);
        leader = child.processId();
        EXPECT_NE(remainsOf(leader), "");
    }
    EXPECT_EQ(remainsInTheEnd(leader), "");
}

TEST(ChildReaper, manyChildrenAreEndedConcurrently)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "ignoresTermination"};
    ChildStarter starter;
    starter.closeInput();
    ChildReaper reaper;
    std::vector<pid_t> leaders;
    {
        std::vector<ChildReaper::Child> children;
        for (int count = 0; count < 5; ++count) {
            children.push_back(starter.start(reaper, fake));
            leaders.push_back(children.back().processId());
        }
        (void)fake.recorded("ready");
    }
    for (const pid_t leader : leaders)
        EXPECT_EQ(remainsInTheEnd(leader), "");
}

TEST(ChildReaper, childrenReleasedInTurnAreAllEnded)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "silent"};
    ChildStarter starter;
    ChildReaper reaper;
    for (int count = 0; count < 3; ++count) { // the background thread ends before the next child is released
        pid_t leader = starter.start(reaper, fake).processId();
        EXPECT_EQ(remainsInTheEnd(leader), "");
    }
}

TEST(ChildReaper, endAllEndsRunningChildrenBeforeItReturns)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "silent"};
    ChildStarter starter;
    ChildReaper reaper;
    const auto child = starter.start(reaper, fake);
    reaper.endAll();
    EXPECT_EQ(remainsOf(child.processId()), "");
}

TEST(ChildReaper, endAllKillsChildrenThatIgnoreSigtermBeforeItReturns)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "ignoresTermination"};
    ChildStarter starter;
    starter.closeInput();
    ChildReaper reaper;
    const auto child = starter.start(reaper, fake);
    (void)fake.recorded("ready");
    reaper.endAll();
    EXPECT_EQ(remainsOf(child.processId()), "");
}

TEST(ChildReaper, destructorFinishesEndingInTheBackground)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "ignoresTermination"};
    ChildStarter starter;
    starter.closeInput();
    pid_t leader = 0;
    {
        ChildReaper reaper;
        const auto child = starter.start(reaper, fake);
        leader = child.processId();
        (void)fake.recorded("ready");
    }
    EXPECT_EQ(remainsOf(leader), "");
}

TEST(ChildReaper, endAllKillsTheGroupOfAnExitedLeader)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "grandchildKeepsPipe"};
    ChildStarter starter;
    starter.closeInput();
    ChildReaper reaper;
    const auto child = starter.start(reaper, fake);
    (void)fake.recorded("ready");
    reaper.endAll();
    EXPECT_EQ(remainsInTheEnd(child.processId()), "");
}

TEST(ChildReaper, nothingIsStartedAfterEndAll)
{
    ChildReaper reaper;
    reaper.endAll();
    bool isSpawned = false;
    const auto started = reaper.start([&]() -> std::variant<pid_t, std::error_code> {
        isSpawned = true;
        return std::error_code{};
    });
    EXPECT_TRUE(std::holds_alternative<ChildReaper::Ended>(started));
    EXPECT_FALSE(isSpawned);
}

TEST(ChildReaper, childStartedDuringEndAllIsEndedAtOnce)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "silent"};
    ChildStarter starter;
    ChildReaper reaper;
    pid_t leader = 0;
    const auto started = reaper.start([&] {
        const auto spawned = starter.spawn(fake.executable());
        leader = std::get<pid_t>(spawned);
        reaper.endAll();
        return spawned;
    });
    EXPECT_TRUE(std::holds_alternative<ChildReaper::Ended>(started));
    EXPECT_EQ(remainsOf(leader), "");
}

TEST(ChildReaper, failedStartIsReturnedAndLeavesNothingToEnd)
{
    ChildReaper reaper;
    const auto error = std::make_error_code(std::errc::permission_denied);
    const auto started = reaper.start([&]() -> std::variant<pid_t, std::error_code> { return error; });
    ASSERT_TRUE(std::holds_alternative<std::error_code>(started));
    EXPECT_EQ(std::get<std::error_code>(started), error);
}

TEST(ChildReaper, childrenAreReapedWhereSigchldWasIgnored)
{
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "grandchildKeepsPipe"};
    ChildStarter starter;
    starter.closeInput();
    ChildReaper reaper;
    pid_t leader = 0;
    {
        const auto child = starter.start(reaper, fake);
        leader = child.processId();
        (void)fake.recorded("ready");
    }
    EXPECT_EQ(remainsInTheEnd(leader), "");
    std::signal(SIGCHLD, before);
}

TEST(ChildReaper, childReapedElsewhereIsForgotten)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "exitsAtOnce"};
    ChildStarter starter;
    ChildReaper reaper;
    {
        const auto child = starter.start(reaper, fake);
        ASSERT_EQ(waitpid(child.processId(), nullptr, 0), child.processId());
    }
    reaper.endAll();
    EXPECT_EQ(childCount(), 0);
}

} // namespace tallyfox::test
