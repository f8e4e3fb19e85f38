#include "Support/AnyHistory.h"
#include "Support/HistoryRecords.h"
#include "Support/Moments.h"
#include "Support/ScratchFolder.h"
#include "TallyfoxCore/Files/LocalUsageScanner.h"
#include "TallyfoxCore/Usage/UsageSummary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <random>
#include <rapidcheck/gtest.h>
#include <set>
#include <string>
#include <vector>

/// What holds for all histories, however their records are spread over files.
namespace tallyfox::test {
namespace {

using Samples = std::vector<UsageSample>;

/// Files of a history folder, the first one modified last.
class Files {
public:
    void add(const std::vector<std::string>& lines)
    {
        const std::filesystem::path file = m_folder.path() / (std::to_string(m_count) + ".jsonl");
        writeFile(file, textOf(lines));
        std::filesystem::last_write_time(file, m_newest - std::chrono::seconds{m_count++});
    }

    [[nodiscard]] Samples scanned(Provider provider) const
    {
        const auto result = LocalUsageScanner::scan(provider, m_folder.path());
        RC_ASSERT(std::holds_alternative<Samples>(result));
        return std::get<Samples>(result);
    }

private:
    ScratchFolder m_folder;
    std::filesystem::file_time_type m_newest = std::filesystem::file_time_type::clock::now();
    int m_count = 0;
};

/// In an order that depends only on the samples.
Samples sorted(Samples samples)
{
    const auto rank = [](const UsageSample& sample) { return std::pair{sample.timestamp, sample.totalTokens}; };
    std::ranges::sort(samples, {}, rank);
    return samples;
}

UsageSummary summaryOf(const Samples& samples)
{
    return {samples, utcTime(2026, 11, 21, 12), Calendar::utc()};
}

Samples samplesOfFile(const std::vector<std::string>& lines, Provider provider)
{
    Files files;
    files.add(lines);
    return files.scanned(provider);
}

/// What counts: of a Claude Code message its largest reading, of anything else each record.
std::int64_t expectedTotal(const AnyFile& file, Provider provider)
{
    std::int64_t total = 0;
    std::map<int, std::int64_t> largest;
    for (const AnyRecord& record : file.records) {
        if (provider == Provider::claude && record.id)
            largest[*record.id] = std::max(largest[*record.id], record.total);
        else
            total += record.total;
    }
    for (const auto& [id, reading] : largest)
        total += reading;
    return total;
}

std::int64_t totalOf(const Samples& samples)
{
    std::int64_t total = 0;
    for (const UsageSample& sample : samples)
        total += sample.totalTokens;
    return total;
}

RC_GTEST_PROP(ScanProperty, everyFileCountsItsLargestReadings, ())
{
    const auto provider = *anyProvider();
    const auto file = *anyFile();
    RC_ASSERT(totalOf(samplesOfFile(file.lines(provider), provider)) == expectedTotal(file, provider));
}

RC_GTEST_PROP(ScanProperty, orderOfFilesDoesNotChangeTheSummary, ())
{
    const auto provider = *anyProvider();
    auto contents = *rc::gen::container<std::vector<AnyFile>>(anyFile());
    Files inOrder;
    for (const AnyFile& file : contents)
        inOrder.add(file.lines(provider));
    std::ranges::shuffle(contents, std::mt19937{*rc::gen::arbitrary<std::uint32_t>()});
    Files permuted;
    for (const AnyFile& file : contents)
        permuted.add(file.lines(provider));
    const Samples one = inOrder.scanned(provider);
    const Samples other = permuted.scanned(provider);
    RC_ASSERT(std::ranges::is_sorted(one, {}, &UsageSample::timestamp));
    RC_ASSERT(sorted(one) == sorted(other));
    RC_ASSERT(summaryOf(one) == summaryOf(other));
}

RC_GTEST_PROP(ScanProperty, splittingACodexFileAtALineChangesNothing, ())
{
    const std::vector<std::string> lines = (*anyFile()).lines(Provider::codex);
    const auto cut = lines.begin() + *rc::gen::inRange<std::ptrdiff_t>(0, std::ssize(lines) + 1);
    Files parts;
    parts.add({lines.begin(), cut});
    parts.add({cut, lines.end()});
    RC_ASSERT(parts.scanned(Provider::codex) == samplesOfFile(lines, Provider::codex));
}

RC_GTEST_PROP(ScanProperty, splittingAClaudeFileAtALineOnlyCountsMessagesOfBothPartsTwice, ())
{
    const auto file = *anyFile();
    const auto cut = file.records.begin() + *rc::gen::inRange<std::ptrdiff_t>(0, std::ssize(file.records) + 1);
    const AnyFile front{{file.records.begin(), cut}, file.noise};
    const AnyFile back{{cut, file.records.end()}, file.noise};
    std::set<int> idsOfFront;
    for (const AnyRecord& record : front.records)
        idsOfFront.insert(record.id.value_or(-1));
    std::set<int> idsOfBoth;
    for (const AnyRecord& record : back.records) {
        if (record.id && idsOfFront.contains(*record.id))
            idsOfBoth.insert(*record.id);
    }
    Files parts;
    parts.add(front.lines(Provider::claude));
    parts.add(back.lines(Provider::claude));
    const Samples split = parts.scanned(Provider::claude);
    const Samples whole = samplesOfFile(file.lines(Provider::claude), Provider::claude);
    RC_ASSERT(split.size() == whole.size() + idsOfBoth.size());
    RC_ASSERT(idsOfBoth.empty() == (sorted(split) == sorted(whole)));
    RC_ASSERT(totalOf(split) == expectedTotal(front, Provider::claude) + expectedTotal(back, Provider::claude));
}

RC_GTEST_PROP(ScanProperty, repeatedMessageOnlyAddsItsIncrease, ())
{
    auto file = *rc::gen::suchThat(anyFile(), [](const AnyFile& some) { return !some.records.empty(); });
    AnyRecord repeated = *rc::gen::elementOf(file.records);
    repeated.id = repeated.id.value_or(0);
    file.records.push_back(repeated);
    const Samples before = samplesOfFile(file.lines(Provider::claude), Provider::claude);
    const std::int64_t change = *rc::gen::inRange<std::int64_t>(-1'000, 1'000);
    repeated.total = std::max<std::int64_t>(0, repeated.total + change);
    repeated.second = *rc::gen::inRange(0, 30);
    file.records.push_back(repeated);
    const Samples after = samplesOfFile(file.lines(Provider::claude), Provider::claude);
    RC_ASSERT(after.size() == before.size());
    RC_ASSERT(totalOf(after) >= totalOf(before));
    RC_ASSERT(totalOf(after) == expectedTotal(file, Provider::claude));
    if (change <= 0)
        RC_ASSERT(after == before);
}

RC_GTEST_PROP(ScanProperty, repeatedCodexEventCountsAgain, ())
{
    auto file = *rc::gen::suchThat(anyFile(), [](const AnyFile& some) { return !some.records.empty(); });
    const AnyRecord repeated = *rc::gen::elementOf(file.records);
    const std::int64_t before = totalOf(samplesOfFile(file.lines(Provider::codex), Provider::codex));
    file.records.push_back(repeated);
    RC_ASSERT(totalOf(samplesOfFile(file.lines(Provider::codex), Provider::codex)) == before + repeated.total);
}

RC_GTEST_PROP(ScanProperty, scanningAgainGivesTheSame, ())
{
    const auto provider = *anyProvider();
    Files files;
    for (const AnyFile& file : *rc::gen::container<std::vector<AnyFile>>(anyFile()))
        files.add(file.lines(provider));
    RC_ASSERT(files.scanned(provider) == files.scanned(provider));
}

} // namespace
} // namespace tallyfox::test
