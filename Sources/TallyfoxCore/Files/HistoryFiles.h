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
    bool isPartial = false; ///< there were more
};

/// The lines of a file's tail.
struct HistoryTail {
    HistoryLines lines{{}};
    bool isPartial = false; ///< the file is longer than its tail
};

namespace LocalUsageScanner {

/// The `maximumFiles` most recently modified files with the extension "jsonl" below the folder `root`; of equally old
/// ones those that are listed first. Hidden files and folders (a dot in front) and links are passed over, and so is
/// what cannot be listed or examined. However many files there are, only the best are kept in mind.
HistoryFiles jsonlFiles(const FileDescriptor& root);

/// Reads tails into one buffer that serves for every file, and is wiped in the end: what the user and the assistants
/// said does not stay in the memory of the program.
class TailReader {
public:
    TailReader();
    TailReader(const TailReader&) = delete;
    TailReader& operator=(const TailReader&) = delete;
    ~TailReader();

    /// The lines of the last `tailSize` bytes of the file at `path` below the folder `root`, without the first one if
    /// the file is longer. Bytes appended after the size was taken are left for the next scan. The lines are valid
    /// until the next call. Fails with the system's error; a path that leads over a link or to anything but a regular
    /// file fails too, and never blocks.
    std::variant<HistoryTail, FileError> tailLines(const FileDescriptor& root, const std::string& path);

private:
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_filled = 0; ///< bytes of the buffer that have ever been asked for
};

} // namespace LocalUsageScanner

} // namespace tallyfox
