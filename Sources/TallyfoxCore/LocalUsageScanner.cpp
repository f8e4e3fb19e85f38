#include "TallyfoxCore/LocalUsageScanner.h"

#include "TallyfoxCore/ClaudeUsageParser.h"
#include "TallyfoxCore/CodexUsageParser.h"
#include "TallyfoxCore/FileDescriptor.h"
#include "TallyfoxCore/HistoryFiles.h"

#include <algorithm>
#include <memory>

namespace tallyfox {

namespace {

std::unique_ptr<HistoryParser> parserFor(Provider provider)
{
    return provider == Provider::codex ? CodexUsageParser::make() : ClaudeUsageParser::make();
}

/// Sorts by timestamp; equal ones keep their order. Moves each sample once: sorting the records themselves would move
/// them over and over.
std::vector<UsageSample> sortedByTime(std::vector<UsageSample> samples)
{
    struct Key {
        Instant timestamp;
        std::size_t index;
        auto operator<=>(const Key&) const = default;
    };
    if (std::ranges::is_sorted(samples, {}, &UsageSample::timestamp))
        return samples;
    std::vector<Key> keys;
    keys.reserve(samples.size());
    for (const UsageSample& sample : samples)
        keys.push_back({sample.timestamp, keys.size()});
    std::ranges::sort(keys);
    std::vector<UsageSample> sorted;
    sorted.reserve(samples.size());
    for (const Key& key : keys)
        sorted.push_back(std::move(samples[key.index]));
    return sorted;
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
    const auto parser = parserFor(provider);
    TailReader reader;
    for (const std::string& path : files.paths) {
        const auto tail = reader.tailLines(folder, path);
        if (const auto* const error = std::get_if<FileError>(&tail))
            return *error;
        const HistoryTail& read = std::get<HistoryTail>(tail);
        result.isPartial |= read.isPartial;
        parser->parse(read.lines, result.samples);
    }
    result.samples = sortedByTime(std::move(result.samples));
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
