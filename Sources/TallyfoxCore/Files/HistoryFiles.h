#pragma once

#include "TallyfoxCore/Files/LocalUsageScanner.h"
#include "TallyfoxCore/Usage/HistoryLines.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tallyfox {

class FileDescriptor;

/// The history files that one scan reads.
struct HistoryFiles {
    std::vector<std::string> paths; ///< relative to the folder they were looked for in; newest first
    bool isPartial = false; ///< there were more than a scan reads
};

/// The lines of a file's tail.
struct HistoryTail {
    HistoryLines lines{{}};
    bool isPartial = false; ///< the file is longer than its tail
};

namespace LocalUsageScanner {

/// The `maximumFiles` most recently modified files with the extension "jsonl" below the folder `root`; of equally old
/// ones those that are listed first. Skips hidden files and folders (names beginning with a dot), links, and whatever
/// cannot be listed or examined. Memory is bounded: only the current candidates are kept.
HistoryFiles jsonlFiles(const FileDescriptor& root);

/// Reads tails into one buffer, reused for every file and wiped on destruction, so that conversations do not stay in
/// the program's memory.
class TailReader {
public:
    TailReader();
    TailReader(const TailReader&) = delete;
    TailReader& operator=(const TailReader&) = delete;
    ~TailReader();

    /// The lines in the last `tailSize` bytes of the file at `path` below the folder `root`, without the first one if
    /// the file is longer. Bytes appended after the size was taken are left for the next scan. The lines are valid
    /// until the next call. Fails with the system's error; also fails, without blocking, for a path through a link and
    /// for anything but a regular file.
    std::variant<HistoryTail, FileError> tailLines(const FileDescriptor& root, const std::string& path);

private:
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_filled = 0; ///< bytes of the buffer that may have been written
};

} // namespace LocalUsageScanner

} // namespace tallyfox
