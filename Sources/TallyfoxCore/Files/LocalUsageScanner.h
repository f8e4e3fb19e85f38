#pragma once

#include "TallyfoxCore/Usage/Provider.h"
#include "TallyfoxCore/Usage/UsageSample.h"

#include <cstddef>
#include <filesystem>
#include <system_error>
#include <variant>
#include <vector>

namespace tallyfox {

/// The result of one scan of a history folder.
struct LocalUsageScanResult {
    std::vector<UsageSample> samples; ///< ascending by timestamp; equal ones keep the order of the files and lines
    bool isPartial = false; ///< some history was not read: too many files, or a file longer than its tail

    friend bool operator==(const LocalUsageScanResult&, const LocalUsageScanResult&) = default;
};

/// Why a scan failed: the system's error for a selected file that could not be opened, sized or read.
struct FileError {
    std::error_code code;

    friend bool operator==(const FileError&, const FileError&) = default;
};

/// Reads the history files (extension "jsonl") below a folder. It never writes, locks, watches or follows a link.
namespace LocalUsageScanner {

inline constexpr std::size_t maximumFiles = 256; ///< only the most recently modified ones are read
inline constexpr std::size_t tailSize = 524'288; ///< in bytes: of a longer file only the end is read

/// Scans `root`. A folder that is missing or cannot be listed counts as empty; a subfolder that cannot be entered is
/// skipped. A selected file that cannot be read fails the scan.
std::variant<LocalUsageScanResult, FileError> scanResult(Provider provider, const std::filesystem::path& root);

/// The same scan, without the flag.
std::variant<std::vector<UsageSample>, FileError> scan(Provider provider, const std::filesystem::path& root);

} // namespace LocalUsageScanner

} // namespace tallyfox
