#include "TallyfoxCore/Files/LocalUsageScanner.h"

#include "TallyfoxCore/Files/FileDescriptor.h"
#include "TallyfoxCore/Files/HistoryFiles.h"
#include "TallyfoxCore/Usage/HistoryParser.h"

#include <algorithm>
#include <utility>

namespace tallyfox {

namespace {

struct SortKey {
    Instant timestamp;
    std::size_t index;
    auto operator<=>(const SortKey&) const = default;
};

/// Moves each sample to the place of the key that names it, along the cycles of that permutation: a second list would
/// be as much memory again.
void arrange(std::vector<UsageSample>& samples, std::vector<SortKey>& keys)
{
    for (std::size_t begin = 0; begin < keys.size(); ++begin) {
        if (keys[begin].index == begin)
            continue;
        UsageSample first = std::move(samples[begin]);
        std::size_t hole = begin;
        while (keys[hole].index != begin) {
            const std::size_t next = std::exchange(keys[hole].index, hole);
            samples[hole] = std::move(samples[next]);
            hole = next;
        }
        samples[hole] = std::move(first);
        keys[hole].index = hole;
    }
}

/// Sorts by timestamp; equal ones keep their order. Moves each sample once: sorting the records themselves would move
/// them over and over.
void sortByTime(std::vector<UsageSample>& samples)
{
    if (std::ranges::is_sorted(samples, {}, &UsageSample::timestamp))
        return;
    std::vector<SortKey> keys;
    keys.reserve(samples.size());
    for (const UsageSample& sample : samples)
        keys.push_back({sample.timestamp, keys.size()});
    std::ranges::sort(keys);
    arrange(samples, keys);
}

} // namespace

std::variant<LocalUsageScanResult, FileError> LocalUsageScanner::scanResult(Provider provider,
                                                                            const std::filesystem::path& root)
{
    LocalUsageScanResult result;
    const FileDescriptor folder = FileDescriptor::openFolder(root.c_str());
    if (!folder.isOpen())
        return result;
    const HistoryFiles files = jsonlFiles(folder);
    result.isPartial = files.isPartial;
    const auto parser = traitsOf(provider).makeParser();
    TailReader reader;
    for (const std::string& path : files.paths) {
        const auto tail = reader.tailLines(folder, path);
        if (const auto* const error = std::get_if<FileError>(&tail))
            return *error;
        const HistoryTail& read = std::get<HistoryTail>(tail);
        result.isPartial |= read.isPartial;
        parser->parse(read.lines, result.samples);
    }
    sortByTime(result.samples);
    return result;
}

std::variant<std::vector<UsageSample>, FileError> LocalUsageScanner::scan(Provider provider,
                                                                          const std::filesystem::path& root)
{
    auto result = scanResult(provider, root);
    if (const auto* const error = std::get_if<FileError>(&result))
        return *error;
    return std::move(std::get<LocalUsageScanResult>(result).samples);
}

} // namespace tallyfox
