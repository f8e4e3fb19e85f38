#include "Support/FakeCodexFolder.h"
#include "Support/ProcessTable.h"
#include "Tallyfox/Engine/Quota/ChildReaper.h"
#include "Tallyfox/Engine/Quota/CodexQuotaFetcher.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <future>
#include <sys/resource.h>
#include <thread>

namespace tallyfox::test {

namespace {

using namespace std::chrono_literals;
using Outcome = std::variant<QuotaSnapshot, QuotaError>;

constexpr auto noLimit = 60s; ///< only prevents a failing test from hanging
constexpr auto shortLimit = 700ms; ///< for children that never reply

QuotaSnapshot snapshot(double usedPercent)
{
    QuotaSnapshot expected;
    expected.provider = Provider::codex;
    expected.primary.usedPercent = usedPercent;
    expected.confidence = MeasurementConfidence::exact;
    return expected;
}

QuotaSnapshot usualSnapshot()
{
    QuotaSnapshot expected = snapshot(42.5);
    expected.primary.windowMinutes = 300;
    expected.primary.resetsAt = instantFromUnixSeconds(1'700'000'000);
    return expected;
}

Outcome failure(QuotaError error)
{
    return error;
}

QuotaError systemError(int number)
{
    return std::error_code{number, std::system_category()};
}

/// A signal set reported by the fake, without the two that the C library reserves.
std::uint64_t signalSet(const FakeCodexFolder& fake, const std::string& label)
{
    constexpr std::uint64_t ofTheLibrary = 0x1'8000'0000;
    const std::string status = fake.recorded("signals");
    return std::stoull(status.substr(status.find(label) + label.size()), nullptr, 16) & ~ofTheLibrary;
}

/// One fake and the fetches from it. Checks in the end that no process is left.
class Exchange {
public:
    explicit Exchange(const std::string& mode)
        : fake(TALLYFOX_FAKE_CODEX, mode)
    { }

    Outcome fetch(std::chrono::milliseconds limit = noLimit, const std::stop_token& stop = {})
    {
        return CodexQuotaFetcher::fetch({fake.executable()}, reaper, stop, limit);
    }

    FakeCodexFolder fake;
    ChildReaper reaper;
};

} // namespace

TEST(CodexQuotaFetcher, replyBecomesTheSnapshotAndTheChildEnds)
{
    Exchange exchange{"normal"};
    EXPECT_EQ(exchange.fetch(), Outcome{usualSnapshot()});
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

TEST(CodexQuotaFetcher, serverReceivesExactlyThreeLinesAndOneArgument)
{
    Exchange exchange{"normal"};
    (void)exchange.fetch();
    EXPECT_EQ(exchange.fake.recorded("received"),
              "{\"method\":\"initialize\",\"id\":0,\"params\":{\"clientInfo\":{\"name\":\"tallyfox\",\"title\":"
              "\"Tallyfox\",\"version\":\"0.1.0\"}}}\n"
              "{\"method\":\"initialized\"}\n"
              "{\"method\":\"account/rateLimits/read\",\"id\":2}\n");
    EXPECT_EQ(exchange.fake.recorded("arguments"), "app-server\n");
}

TEST(CodexQuotaFetcher, environmentAndWorkingFolderAreInherited)
{
    ASSERT_EQ(setenv("TALLYFOX_TEST_MARK", "as it was", 1), 0);
    Exchange exchange{"normal"};
    (void)exchange.fetch();
    EXPECT_EQ(exchange.fake.recorded("environment"), "as it was");
    EXPECT_EQ(exchange.fake.recorded("working-folder"), std::filesystem::current_path().native());
}

TEST(CodexQuotaFetcher, childInheritsOnlyItsThreeDescriptors)
{
    for (int inherited = 3; inherited < 256; ++inherited) // the parent process may have left some open
        fcntl(inherited, F_SETFD, FD_CLOEXEC);
    Exchange exchange{"normal"};
    (void)exchange.fetch();
    EXPECT_EQ(exchange.fake.recorded("descriptors"), "0 1 2 ");
}

TEST(CodexQuotaFetcher, blockedAndIgnoredSignalsAreResetInTheChildOnly)
{
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &blocked, nullptr), 0);
    ASSERT_NE(std::signal(SIGPIPE, SIG_IGN), SIG_ERR);
    Exchange exchange{"normal"};
    (void)exchange.fetch();
    EXPECT_EQ(std::signal(SIGPIPE, SIG_DFL), SIG_IGN);
    EXPECT_EQ(signalSet(exchange.fake, "SigBlk:"), 0U);
    EXPECT_EQ(signalSet(exchange.fake, "SigIgn:"), 0U);
    sigset_t now;
    ASSERT_EQ(pthread_sigmask(SIG_UNBLOCK, &blocked, &now), 0);
    EXPECT_EQ(sigismember(&now, SIGUSR1), 1);
    EXPECT_EQ(sigismember(&now, SIGPIPE), 0);
}

TEST(CodexQuotaFetcher, fetchWorksWithoutStandardDescriptors)
{
    EXPECT_EXIT(
        {
            close(STDIN_FILENO);
            close(STDOUT_FILENO);
            Exchange exchange{"normal"};
            const bool isRight = exchange.fetch() == Outcome{usualSnapshot()};
            exchange.reaper.endAll();
            std::_Exit(isRight ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(CodexQuotaFetcher, greetingNotificationsAndNoiseBeforeTheReplyAreSkipped)
{
    Exchange exchange{"notificationsFirst"};
    EXPECT_EQ(exchange.fetch(), Outcome{usualSnapshot()});
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

TEST(CodexQuotaFetcher, replyWithATextIdIsSkipped)
{
    Exchange exchange{"textId"};
    EXPECT_EQ(exchange.fetch(), Outcome{usualSnapshot()});
}

TEST(CodexQuotaFetcher, errorReplyIsADecodingErrorAndEndsReading)
{
    Exchange exchange{"errorReply"};
    EXPECT_EQ(exchange.fetch(), failure(DecodingError::missingKey));
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

TEST(CodexQuotaFetcher, replyWithoutResultIsADecodingError)
{
    Exchange exchange{"emptyReply"};
    EXPECT_EQ(exchange.fetch(), failure(DecodingError::missingKey));
}

TEST(CodexQuotaFetcher, childThatExitsAtOnceIsAlwaysUnavailable)
{
    for (int round = 0; round < 20; ++round) { // writing into its pipe must never be reported as an error
        Exchange exchange{"exitsAtOnce"};
        ASSERT_EQ(exchange.fetch(), failure(SourceError::unavailable));
        ASSERT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
    }
}

TEST(CodexQuotaFetcher, childThatExitsWith127IsUnavailable)
{
    Exchange exchange{"exits127"};
    EXPECT_EQ(exchange.fetch(), failure(SourceError::unavailable));
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

TEST(CodexQuotaFetcher, childThatEndsAfterTheGreetingIsUnavailable)
{
    Exchange exchange{"endsAfterGreeting"};
    EXPECT_EQ(exchange.fetch(), failure(SourceError::unavailable));
}

TEST(CodexQuotaFetcher, lastLineWithoutLineFeedIsRead)
{
    Exchange exchange{"noFinalLineFeed"};
    EXPECT_EQ(exchange.fetch(), Outcome{usualSnapshot()});
}

TEST(CodexQuotaFetcher, replyReceivedByteByByteIsAssembled)
{
    Exchange exchange{"singleBytes"};
    EXPECT_EQ(exchange.fetch(), Outcome{usualSnapshot()});
}

TEST(CodexQuotaFetcher, floodOfLinesEndsAtTheLimit)
{
    Exchange exchange{"flood"};
    EXPECT_EQ(exchange.fetch(shortLimit), failure(SourceError::timeout));
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

TEST(CodexQuotaFetcher, endlessLineEndsAtTheLimitInBoundedMemory)
{
    Exchange exchange{"endlessLine"};
    rusage before{};
    rusage after{};
    ASSERT_EQ(getrusage(RUSAGE_SELF, &before), 0);
    EXPECT_EQ(exchange.fetch(shortLimit), failure(SourceError::timeout));
    ASSERT_EQ(getrusage(RUSAGE_SELF, &after), 0);
    EXPECT_LE(after.ru_maxrss - before.ru_maxrss, 16 * 1024); // KiB, after hundreds of MiB of output
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

TEST(CodexQuotaFetcher, tooLongLineIsDroppedAndTheNextOneIsRead)
{
    Exchange exchange{"tooLongLine"};
    EXPECT_EQ(exchange.fetch(), Outcome{snapshot(7)});
}

TEST(CodexQuotaFetcher, binaryGarbageIsSkippedAndInvalidUtf8IsRepaired)
{
    Exchange exchange{"garbage"};
    EXPECT_EQ(exchange.fetch(), Outcome{snapshot(42.5)});
}

TEST(CodexQuotaFetcher, binaryGarbageAloneIsUnavailable)
{
    Exchange exchange{"garbageOnly"};
    EXPECT_EQ(exchange.fetch(), failure(SourceError::unavailable));
}

TEST(CodexQuotaFetcher, silentChildIsEndedAtTheLimit)
{
    Exchange exchange{"silent"};
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(exchange.fetch(shortLimit), failure(SourceError::timeout));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, shortLimit);
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

// Suites of their own, so that these ten seconds pass at the same time as others.
TEST(CodexQuotaFetcherTimeLimit, silentChildIsEndedAfterTenSeconds)
{
    Exchange exchange{"silent"};
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(exchange.fetch(CodexQuotaFetcher::timeLimit), failure(SourceError::timeout));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 10s);
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

TEST(CodexQuotaFetcherLateReply, replyAfterNineAndAHalfSecondsIsInTime)
{
    Exchange exchange{"late"};
    const auto begin = std::chrono::steady_clock::now();
    const Outcome outcome = exchange.fetch(CodexQuotaFetcher::timeLimit);
    EXPECT_EQ(outcome, Outcome{usualSnapshot()});
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 9500ms);
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

TEST(CodexQuotaFetcher, childThatClosesItsOutputIsUnavailableAndEnded)
{
    Exchange exchange{"closesOutput"};
    EXPECT_EQ(exchange.fetch(), failure(SourceError::unavailable));
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

TEST(CodexQuotaFetcher, childThatIgnoresSigtermIsKilled)
{
    Exchange exchange{"ignoresTermination"};
    auto outcome = std::async(std::launch::async, [&] { return exchange.fetch(2s); });
    (void)exchange.fake.recorded("ready");
    EXPECT_EQ(outcome.get(), failure(SourceError::timeout));
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

TEST(CodexQuotaFetcher, grandchildThatKeepsThePipeOpenIsKilledAtTheLimit)
{
    Exchange exchange{"grandchildKeepsPipe"};
    EXPECT_EQ(exchange.fetch(2s), failure(SourceError::timeout));
    EXPECT_NE(exchange.fake.recorded("grandchild"), exchange.fake.recorded("pid"));
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

TEST(CodexQuotaFetcher, grandchildCanReplyAfterItsLauncherExits)
{
    Exchange exchange{"grandchildAnswers"};
    EXPECT_EQ(exchange.fetch(), Outcome{usualSnapshot()});
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

TEST(CodexQuotaFetcher, stopRequestEndsExchangeAndChild)
{
    Exchange exchange{"silent"};
    std::stop_source stop;
    auto outcome = std::async(std::launch::async, [&] { return exchange.fetch(noLimit, stop.get_token()); });
    (void)exchange.fake.recorded("received");
    stop.request_stop();
    EXPECT_EQ(outcome.get(), failure(SourceError::cancelled));
    EXPECT_EQ(remainsInTheEnd(exchange.fake.processId()), "");
}

TEST(CodexQuotaFetcher, stopRequestedBeforehandStartsNothing)
{
    Exchange exchange{"normal"};
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(exchange.fetch(noLimit, stop.get_token()), failure(SourceError::cancelled));
    EXPECT_FALSE(exchange.fake.hasRun());
}

TEST(CodexQuotaFetcher, nothingIsStartedAfterEndAllOfTheReaper)
{
    Exchange exchange{"normal"};
    exchange.reaper.endAll();
    EXPECT_EQ(exchange.fetch(), failure(SourceError::cancelled));
    EXPECT_FALSE(exchange.fake.hasRun());
}

TEST(CodexQuotaFetcher, fetchesLeaveNoDescriptorOpen)
{
    const int before = openDescriptorCount();
    for (const char* const mode : {"normal", "exitsAtOnce", "errorReply"}) {
        Exchange exchange{mode};
        (void)exchange.fetch();
    }
    EXPECT_EQ(openDescriptorCount(), before);
}

TEST(CodexQuotaFetcher, withoutFreeDescriptorsTheSystemErrorIsReturned)
{
    Exchange exchange{"normal"};
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit none = before;
    none.rlim_cur = 3;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const Outcome outcome = exchange.fetch();
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_EQ(outcome, failure(systemError(EMFILE)));
}

TEST(CodexQuotaFetcher, nonExecutableContentReturnsTheSystemError)
{
    const ScratchFolder folder;
    const auto file = folder.path() / "codex";
    writeFile(file, "neither a program nor a script\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    ChildReaper reaper;
    EXPECT_EQ(CodexQuotaFetcher::fetch({file}, reaper, {}, noLimit), failure(systemError(ENOEXEC)));
}

TEST(CodexQuotaFetcher, candidatesAreTheUsersOwnThenTheTwoUsualPlaces)
{
    EXPECT_EQ(CodexQuotaFetcher::candidates("/home/ada"),
              (std::vector<std::filesystem::path>{"/home/ada/.local/bin/codex", "/opt/homebrew/bin/codex",
                                                  "/usr/local/bin/codex"}));
}

TEST(CodexQuotaFetcher, nonExecutableFilesAreSkippedAndNoneLeftIsMissingCli)
{
    const ScratchFolder folder;
    const auto file = folder.path() / "codex";
    writeFile(file, "#!/bin/sh\n");
    EXPECT_EQ(CodexQuotaFetcher::executableURL({file, folder.path() / "absent"}),
              (std::variant<std::filesystem::path, SourceError>{SourceError::missingCLI}));
    ChildReaper reaper;
    EXPECT_EQ(CodexQuotaFetcher::fetch({file}, reaper), failure(SourceError::missingCLI));
    EXPECT_EQ(CodexQuotaFetcher::fetch({}, reaper), failure(SourceError::missingCLI));
}

TEST(CodexQuotaFetcher, firstExecutableCandidateIsTaken)
{
    const FakeCodexFolder first{TALLYFOX_FAKE_CODEX, "normal"};
    const FakeCodexFolder second{TALLYFOX_FAKE_CODEX, "normal"};
    const ScratchFolder folder; // a folder is executable too, but is not a file
    EXPECT_EQ(CodexQuotaFetcher::executableURL({folder.path(), first.executable(), second.executable()}),
              (std::variant<std::filesystem::path, SourceError>{first.executable()}));
}

TEST(CodexQuotaFetcher, executableThatAppearsBetweenFetchesIsFound)
{
    const FakeCodexFolder fake{TALLYFOX_FAKE_CODEX, "normal"};
    const ScratchFolder folder;
    const auto place = folder.path() / "codex";
    ChildReaper reaper;
    EXPECT_EQ(CodexQuotaFetcher::fetch({place}, reaper, {}, noLimit), failure(SourceError::missingCLI));
    writeFile(folder.path() / "mode", "normal");
    std::filesystem::create_symlink(TALLYFOX_FAKE_CODEX, place);
    EXPECT_EQ(CodexQuotaFetcher::fetch({place}, reaper, {}, noLimit), Outcome{usualSnapshot()});
}

} // namespace tallyfox::test
