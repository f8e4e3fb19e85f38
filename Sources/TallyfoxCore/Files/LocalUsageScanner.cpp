#include "TallyfoxCore/Files/LocalUsageScanner.h"

#include "TallyfoxCore/Files/FileDescriptor.h"
#include "TallyfoxCore/Files/HistoryFiles.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tallyfox {

std::variant<LocalUsageScanResult, FileError> LocalUsageScanner::scanResult(Provider provider,
                                                                            const std::filesystem::path& root)
{
    LocalUsageScanResult result;
    const FileDescriptor folder = FileDescriptor::openFolder(root.c_str());
    if (!folder.isOpen())
        return result;
    const HistoryFiles files = jsonlFiles(folder);
    result.isPartial = files.isPartial;
    TailReader reader;
    for (const std::string& path : files.paths) {
        const auto tail = reader.tailLines(folder, path);
        if (const auto* const error = std::get_if<FileError>(&tail))
            return *error;
        const HistoryTail& read = std::get<HistoryTail>(tail);
        result.isPartial |= read.isPartial;
        std::vector<UsageSample> samples = traitsOf(provider).parse(read.lines, LineSelection::mentioning);
        std::ranges::move(samples, std::back_inserter(result.samples));
    }
    std::ranges::stable_sort(result.samples, {}, &UsageSample::timestamp);
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
