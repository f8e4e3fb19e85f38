#include "Support/HistoryFolder.h"
#include "Support/HistoryRecords.h"
#include "TallyfoxCore/Files/LocalUsageScanner.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <stop_token>
#include <string>
#include <thread>

/// Histories that are written, as fast as the disk allows, while they are read.
namespace tallyfox::test {
namespace {

namespace fs = std::filesystem;

/// How often to scan; scripts/prove asks for a thousand.
int scanCount()
{
    const char* const wanted = std::getenv("TALLYFOX_LIVING_SCANS");
    return wanted ? std::atoi(wanted) : 50;
}

constexpr std::int64_t tokens = 4321; ///< of each record that is ever written

/// Changes histories as assistants, users and log rotation do, without a pause.
class Life {
public:
    explicit Life(fs::path root)
        : m_root(std::move(root))
    { }

    void step()
    {
        const fs::path file = fileOf(m_random() % files);
        std::error_code ignored; // a step that comes too late has no effect
        switch (m_random() % 12) {
        case 0:
            fs::resize_file(file, m_random() % 100'000, ignored);
            break;
        case 1:
            fs::rename(file, fileOf(m_random() % files), ignored);
            break;
        case 2:
            fs::remove(file, ignored);
            break;
        case 3:
            fs::remove_all(file.parent_path(), ignored);
            break;
        case 4:
            replace(file);
            break;
        default:
            append(file, 1 + m_random() % 400);
        }
    }

private:
    static constexpr std::size_t files = 12;

    [[nodiscard]] fs::path fileOf(std::size_t number) const
    {
        return m_root / std::to_string(number % 4) / (std::to_string(number) + ".jsonl");
    }

    void append(const fs::path& file, std::size_t records) const
    {
        std::error_code ignored;
        fs::create_directories(file.parent_path(), ignored);
        std::ofstream stream{file, std::ios::app | std::ios::binary};
        for (std::size_t count = 0; count < records; ++count)
            stream << m_line;
    }

    /// As an editor does: a new file replaces the old one atomically.
    void replace(const fs::path& file) const
    {
        const fs::path unfinished = m_root / "unfinished";
        std::error_code ignored;
        fs::remove(unfinished, ignored);
        append(unfinished, 20);
        fs::rename(unfinished, file, ignored);
    }

    fs::path m_root;
    std::string m_line = claudeLine({{"message.id", ""}}) + '\n';
    std::mt19937 m_random{20261121};
};

class LivingHistories : public HistoryFolder {
protected:
    /// Every record is one of those that were written, unharmed.
    static void expectOnlyWrittenRecords(const LocalUsageScanResult& result)
    {
        for (const UsageSample& sample : result.samples)
            ASSERT_EQ(sample.totalTokens, tokens);
    }

    /// What may happen to a file between its listing and its reading.
    static bool isExpected(std::error_code error)
    {
        return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
    }
};

TEST_F(LivingHistories, everyScanGivesWrittenRecordsOrTheSystemsError)
{
    const std::size_t descriptors = openDescriptors();
    int succeeded = 0;
    std::size_t samples = 0;
    {
        Life life{root()};
        for (int count = 0; count < 30; ++count)
            life.step(); // there is something to read from the start
        const std::jthread living{[&life](const std::stop_token& stop) {
            while (!stop.stop_requested())
                life.step();
        }};
        for (int count = 0; count < scanCount(); ++count) {
            const auto result = LocalUsageScanner::scanResult(Provider::claude, root());
            if (const auto* const read = std::get_if<LocalUsageScanResult>(&result)) {
                ++succeeded;
                samples += read->samples.size();
                expectOnlyWrittenRecords(*read);
                ASSERT_FALSE(HasFatalFailure());
            } else {
                ASSERT_TRUE(isExpected(errorOf(result))) << errorOf(result).message();
            }
        }
    }
    EXPECT_GT(samples, 0U);
    EXPECT_EQ(openDescriptors(), descriptors);
    const auto atRest = LocalUsageScanner::scanResult(Provider::claude, root());
    EXPECT_EQ(errorOf(atRest), std::error_code{});
    EXPECT_EQ(atRest, LocalUsageScanner::scanResult(Provider::claude, root()));
    std::printf("living histories: %d of %d scans succeeded, %zu samples read\n", succeeded, scanCount(), samples);
}

} // namespace
} // namespace tallyfox::test
