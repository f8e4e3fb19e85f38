#include "Support/HistoryFolder.h"
#include "Support/HistoryRecords.h"
#include "Support/Moments.h"
#include "TallyfoxCore/Files/LocalUsageScanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <stop_token>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace tallyfox::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::size_t tailSize = LocalUsageScanner::tailSize;

/// A Claude record without an id, so that no other replaces it.
std::string claudeAt(const std::string& time, int total)
{
    return claudeLine({{"timestamp", "\"2026-11-21T" + time + "Z\""},
                       {"message.id", ""},
                       {"message.usage", "{\"output_tokens\":" + std::to_string(total) + '}'}});
}

std::string codexAt(const std::string& time, int total)
{
    return codexLine({{"timestamp", "\"2026-11-21T" + time + "Z\""},
                      {"payload.info.last_token_usage.total_tokens", std::to_string(total)}});
}

class LocalUsageScannerTest : public HistoryFolder {
protected:
    [[nodiscard]] LocalUsageScanResult scanned(Provider provider = Provider::claude) const
    {
        const auto result = LocalUsageScanner::scanResult(provider, root());
        EXPECT_EQ(errorOf(result), std::error_code{});
        const auto* const read = std::get_if<LocalUsageScanResult>(&result);
        return read != nullptr ? *read : LocalUsageScanResult{};
    }
    [[nodiscard]] std::vector<std::int64_t> totals(Provider provider = Provider::claude) const
    {
        return totalsOf(scanned(provider).samples);
    }
};

TEST_F(LocalUsageScannerTest, emptyFolderHasNoSamples)
{
    EXPECT_EQ(scanned(), LocalUsageScanResult{});
}

TEST_F(LocalUsageScannerTest, eachProviderReadsItsOwnRecords)
{
    write("mixed.jsonl", claudeLine() + '\n' + codexLine() + '\n');
    EXPECT_THAT(scanned(Provider::claude).samples, ElementsAre(claudeSample()));
    EXPECT_THAT(scanned(Provider::codex).samples, ElementsAre(codexSample()));
}

TEST_F(LocalUsageScannerTest, scanGivesTheSamplesAlone)
{
    write("a.jsonl", claudeLine());
    const auto samples = LocalUsageScanner::scan(Provider::claude, root());
    EXPECT_THAT(std::get<0>(samples), ElementsAre(claudeSample()));
}

TEST_F(LocalUsageScannerTest, samplesOfSeveralFilesComeInOneAscendingOrder)
{
    write("a.jsonl", claudeAt("09:00:01", 1) + '\n' + claudeAt("09:00:04", 4), 10);
    write("b/c.jsonl", claudeAt("09:00:03", 3) + '\n' + claudeAt("09:00:02", 2), 20);
    EXPECT_THAT(totals(), ElementsAre(1, 2, 3, 4));
    write("d.jsonl", codexAt("09:00:02", 2) + '\n' + codexAt("09:00:01", 1), 30);
    EXPECT_THAT(totals(Provider::codex), ElementsAre(1, 2));
}

TEST_F(LocalUsageScannerTest, equalTimesKeepTheOrderOfFilesAndLines)
{
    write("older.jsonl", codexAt("09:00:05", 3) + '\n' + codexAt("09:00:05", 4), 20);
    write("newer.jsonl", codexAt("09:00:05", 1) + '\n' + codexAt("09:00:05", 2) + '\n' + codexAt("09:00:04", 0), 10);
    EXPECT_THAT(totals(Provider::codex), ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(LocalUsageScannerTest, messagesAreMergedWithinAFileOnly)
{
    write("a.jsonl", claudeLine() + '\n' + claudeLine());
    write("b.jsonl", claudeLine());
    EXPECT_THAT(scanned().samples, ElementsAre(claudeSample(), claudeSample()));
}

TEST_F(LocalUsageScannerTest, lineFeedAfterTheLastLineIsOptional)
{
    write("a.jsonl", claudeAt("09:00:01", 1) + '\n' + claudeAt("09:00:02", 2));
    EXPECT_THAT(totals(), ElementsAre(1, 2));
}

TEST_F(LocalUsageScannerTest, badLinesAreSkippedAndDoNotMakeTheResultPartial)
{
    write("a.jsonl",
          "no JSON\n" + claudeAt("09:00:01", 1) + "\n\xFF{}\n" + claudeAt("09:00:02", 2) + "\xC3\n"
              + claudeAt("09:00:03", 3) + "\n{\"usage\":");
    EXPECT_THAT(totals(), ElementsAre(1, 3));
    EXPECT_FALSE(scanned().isPartial);
}

TEST_F(LocalUsageScannerTest, of300FilesThe256NewestAreReadAndTheResultIsPartial)
{
    for (int number = 0; number < 300; ++number)
        write(std::to_string(number) + ".jsonl", claudeAt("09:00:00", number), number);
    std::vector<std::int64_t> newest(256);
    for (int number = 0; number < 256; ++number)
        newest[static_cast<std::size_t>(number)] = number;
    EXPECT_EQ(totals(), newest);
    EXPECT_TRUE(scanned().isPartial);
}

TEST_F(LocalUsageScannerTest, of256FilesAllAreReadAndNothingIsMissing)
{
    for (int number = 0; number < 256; ++number)
        write(std::to_string(number) + ".jsonl", claudeAt("09:00:00", 1), number);
    EXPECT_THAT(totals(), SizeIs(256));
    EXPECT_FALSE(scanned().isPartial);
}

TEST_F(LocalUsageScannerTest, fileOfExactlyTheTailIsWhole)
{
    const std::string records = claudeAt("09:00:01", 1) + '\n' + claudeAt("09:00:02", 2) + '\n';
    write("a.jsonl", records + std::string(tailSize - records.size(), ' '));
    EXPECT_THAT(totals(), ElementsAre(1, 2));
    EXPECT_FALSE(scanned().isPartial);
}

TEST_F(LocalUsageScannerTest, completeRecordAtTheCutIsLost)
{
    const std::string records = claudeAt("09:00:01", 1) + '\n' + claudeAt("09:00:02", 2) + '\n';
    write("a.jsonl", '\n' + records + std::string(tailSize - records.size(), ' '));
    EXPECT_THAT(totals(), ElementsAre(2));
    EXPECT_TRUE(scanned().isPartial);
}

TEST_F(LocalUsageScannerTest, oneLongFileMakesTheWholeResultPartial)
{
    write("long.jsonl", std::string(tailSize + 1, '\n'), 10);
    write("short.jsonl", claudeLine(), 20);
    EXPECT_THAT(scanned().samples, ElementsAre(claudeSample()));
    EXPECT_TRUE(scanned().isPartial);
}

TEST_F(LocalUsageScannerTest, recordKeysCountTheLinesOfTheTail)
{
    // Without an id, a record's key ends in its number among the lines of the tail: here 0.
    const std::string sameKey = claudeLine({{"message.id", R"("2026-11-21T09:41:07Z-0")"}});
    const std::string lines = claudeLine({{"message.id", ""}}) + '\n' + sameKey + '\n';
    const std::string begin = std::string(tailSize, 'x') + "\n";
    write("a.jsonl", begin + lines);
    EXPECT_THAT(scanned().samples, ElementsAre(claudeSample()));
    write("a.jsonl", begin + "another line\n" + lines);
    EXPECT_THAT(scanned().samples, ElementsAre(claudeSample(), claudeSample()));
}

TEST_F(LocalUsageScannerTest, unreadableNamesAndFoldersAreScanned)
{
    write("line\nfeed/\xFF\xFE.jsonl", claudeLine());
    EXPECT_THAT(scanned().samples, ElementsAre(claudeSample()));
}

TEST_F(LocalUsageScannerTest, rootMayBeALink)
{
    write("real/a.jsonl", claudeLine());
    std::filesystem::create_directory_symlink("real", at("link"));
    const auto result = LocalUsageScanner::scanResult(Provider::claude, at("link"));
    EXPECT_THAT(std::get<LocalUsageScanResult>(result).samples, ElementsAre(claudeSample()));
}

TEST_F(LocalUsageScannerTest, scanLeavesFilesAndDescriptorsAsTheyWere)
{
    write("a/b.jsonl", claudeLine(), 100);
    const auto modified = std::filesystem::last_write_time(at("a/b.jsonl"));
    const std::size_t descriptors = openDescriptors();
    EXPECT_THAT(totals(), SizeIs(1));
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_EQ(readFile(at("a/b.jsonl")), claudeLine());
    EXPECT_EQ(std::filesystem::last_write_time(at("a/b.jsonl")), modified);
}

TEST_F(LocalUsageScannerTest, scanOfReadOnlyFilesSucceeds)
{
    write("a/b.jsonl", claudeLine());
    ASSERT_EQ(::chmod(at("a/b.jsonl").c_str(), 0400), 0);
    ASSERT_EQ(::chmod(at("a").c_str(), 0500), 0);
    EXPECT_THAT(totals(), SizeIs(1));
    ASSERT_EQ(::chmod(at("a").c_str(), 0700), 0);
}

/// Appends records to a file, each in two pieces, until there are very many or the object is destroyed.
class GrowingHistory {
public:
    explicit GrowingHistory(const std::filesystem::path& file)
        : m_writer([this, file](const std::stop_token& stop) { append(file, stop); })
    {
        m_written.wait(0);
    }

    [[nodiscard]] std::size_t written() const
    {
        return m_written;
    }

private:
    void append(const std::filesystem::path& path, const std::stop_token& stop)
    {
        std::ofstream file(path, std::ios::app | std::ios::binary);
        const std::string line = claudeAt("09:00:00", 7) + '\n';
        for (std::size_t left = 2'000; left > 0 && !stop.stop_requested(); --left) {
            file << line.substr(0, 100) << std::flush;
            file << line.substr(100) << std::flush;
            ++m_written;
            m_written.notify_one();
        }
    }

    std::atomic<std::size_t> m_written = 0;
    std::jthread m_writer;
};

TEST_F(LocalUsageScannerTest, growingFileGivesWhatWasWrittenSoFar)
{
    write("a.jsonl");
    std::size_t most = 0;
    {
        const GrowingHistory history(at("a.jsonl"));
        for (int round = 0; round < 40; ++round) {
            const std::size_t least = std::max(history.written(), most);
            const auto samples = totals();
            ASSERT_THAT(samples, Each(7));
            ASSERT_GE(samples.size(), least);
            ASSERT_LE(samples.size(), history.written() + 1);
            most = samples.size();
        }
    }
    EXPECT_GE(totals().size(), most);
}

} // namespace
} // namespace tallyfox::test
