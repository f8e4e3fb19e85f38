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

/// Starts children that talk to nobody.
class Nursery {
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

    /// Lets a fake go on that waits for requests.
    void closeInput()
    {
        std::get<Pipe>(m_input).writer = FileDescriptor{};
    }

private:
    std::variant<Pipe, std::error_code> m_input = Pipe::open();
    std::variant<Pipe, std::error_code> m_output = Pipe::open();
};

} // namespace

TEST(ChildReaper, childLeadsASessionAndAGroupOfItsOwn)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "silent"};
    Nursery nursery;
    ChildReaper reaper;
    const auto child = nursery.start(reaper, fake);
    EXPECT_EQ(fake.processId(), child.processId());
    EXPECT_EQ(getpgid(child.processId()), child.processId());
    EXPECT_EQ(getsid(child.processId()), child.processId());
}

TEST(ChildReaper, childThatIsLetGoEndsWithoutAnybodyWaiting)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "silent"};
    Nursery nursery;
    ChildReaper reaper;
    pid_t leader = 0;
    {
        const auto child = nursery.start(reaper, fake);
        leader = child.processId();
        EXPECT_NE(remainsOf(leader), "");
    }
    EXPECT_EQ(remainsInTheEnd(leader), "");
}

TEST(ChildReaper, manyChildrenAreEndedSideBySide)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "ignoresTermination"};
    Nursery nursery;
    nursery.closeInput();
    ChildReaper reaper;
    std::vector<pid_t> leaders;
    {
        std::vector<ChildReaper::Child> children;
        for (int count = 0; count < 5; ++count) {
            children.push_back(nursery.start(reaper, fake));
            leaders.push_back(children.back().processId());
        }
        (void)fake.recorded("ready");
    }
    for (const pid_t leader : leaders)
        EXPECT_EQ(remainsInTheEnd(leader), "");
}

TEST(ChildReaper, childrenLetGoOneAfterTheOtherAreEndedEach)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "silent"};
    Nursery nursery;
    ChildReaper reaper;
    for (int count = 0; count < 3; ++count) { // the background thread has ended before the next one is let go
        pid_t leader = nursery.start(reaper, fake).processId();
        EXPECT_EQ(remainsInTheEnd(leader), "");
    }
}

TEST(ChildReaper, endAllEndsRunningChildrenBeforeItReturns)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "silent"};
    Nursery nursery;
    ChildReaper reaper;
    const auto child = nursery.start(reaper, fake);
    reaper.endAll();
    EXPECT_EQ(remainsOf(child.processId()), "");
}

TEST(ChildReaper, endAllEndsChildrenThatIgnoreTerminationBeforeItReturns)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "ignoresTermination"};
    Nursery nursery;
    nursery.closeInput();
    ChildReaper reaper;
    const auto child = nursery.start(reaper, fake);
    (void)fake.recorded("ready");
    reaper.endAll();
    EXPECT_EQ(remainsOf(child.processId()), "");
}

TEST(ChildReaper, destructionEndsWhatIsBeingEndedInTheBackground)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "ignoresTermination"};
    Nursery nursery;
    nursery.closeInput();
    pid_t leader = 0;
    {
        ChildReaper reaper;
        const auto child = nursery.start(reaper, fake);
        leader = child.processId();
        (void)fake.recorded("ready");
    }
    EXPECT_EQ(remainsOf(leader), "");
}

TEST(ChildReaper, endAllKillsWhatAnExitedLeaderHasLeftInItsGroup)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "grandchildKeepsPipe"};
    Nursery nursery;
    nursery.closeInput();
    ChildReaper reaper;
    const auto child = nursery.start(reaper, fake);
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

TEST(ChildReaper, childWhoseStartEndAllOvertakesIsEndedAtOnce)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "silent"};
    Nursery nursery;
    ChildReaper reaper;
    pid_t leader = 0;
    const auto started = reaper.start([&] {
        const auto spawned = nursery.spawn(fake.executable());
        leader = std::get<pid_t>(spawned);
        reaper.endAll();
        return spawned;
    });
    EXPECT_TRUE(std::holds_alternative<ChildReaper::Ended>(started));
    EXPECT_EQ(remainsOf(leader), "");
}

TEST(ChildReaper, failedStartIsHandedOnAndLeavesNothingToEnd)
{
    ChildReaper reaper;
    const auto error = std::make_error_code(std::errc::permission_denied);
    const auto started = reaper.start([&]() -> std::variant<pid_t, std::error_code> { return error; });
    ASSERT_TRUE(std::holds_alternative<std::error_code>(started));
    EXPECT_EQ(std::get<std::error_code>(started), error);
}

TEST(ChildReaper, childrenAreReapedAlsoWhenTheProgramWasStartedIgnoringTheirEnd)
{
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "grandchildKeepsPipe"};
    Nursery nursery;
    nursery.closeInput();
    ChildReaper reaper;
    pid_t leader = 0;
    {
        const auto child = nursery.start(reaper, fake);
        leader = child.processId();
        (void)fake.recorded("ready");
    }
    EXPECT_EQ(remainsInTheEnd(leader), "");
    std::signal(SIGCHLD, before);
}

TEST(ChildReaper, childReapedByAStrangerIsForgotten)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "exitsAtOnce"};
    Nursery nursery;
    ChildReaper reaper;
    {
        const auto child = nursery.start(reaper, fake);
        ASSERT_EQ(waitpid(child.processId(), nullptr, 0), child.processId());
    }
    reaper.endAll();
    EXPECT_EQ(childCount(), 0);
}

} // namespace tallyfox::test
