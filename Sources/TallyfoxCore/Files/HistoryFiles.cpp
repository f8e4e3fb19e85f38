#include "TallyfoxCore/Files/HistoryFiles.h"

#include "TallyfoxCore/Files/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <compare>
#include <cstdint>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace tallyfox {

namespace {

/// A candidate. The better of two was modified later or, if equally old, listed earlier.
struct Candidate {
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;
    std::uint64_t place = 0; ///< in the order of listing
    std::string path;

    [[nodiscard]] bool isBetterThan(const Candidate& other) const
    {
        if (seconds != other.seconds)
            return seconds > other.seconds;
        return nanoseconds != other.nanoseconds ? nanoseconds > other.nanoseconds : place < other.place;
    }
};

/// Keeps the best candidates, in a heap with the worst of them in front.
class BestCandidates {
public:
    void offer(const std::string& folder, const char* name, const struct stat& status)
    {
        Candidate candidate{status.st_mtim.tv_sec, status.st_mtim.tv_nsec, m_count++, {}};
        const bool isFull = m_best.size() == LocalUsageScanner::maximumFiles;
        if (isFull && !candidate.isBetterThan(m_best.front()))
            return;
        candidate.path = folder + name;
        if (isFull) {
            std::ranges::pop_heap(m_best, isBetter);
            m_best.back() = std::move(candidate);
        } else {
            m_best.push_back(std::move(candidate));
        }
        std::ranges::push_heap(m_best, isBetter);
    }

    HistoryFiles take()
    {
        std::ranges::sort_heap(m_best, isBetter);
        HistoryFiles files;
        files.isPartial = m_count > LocalUsageScanner::maximumFiles;
        for (Candidate& candidate : m_best)
            files.paths.push_back(std::move(candidate.path));
        return files;
    }

private:
    static bool isBetter(const Candidate& one, const Candidate& other)
    {
        return one.isBetterThan(other);
    }

    std::vector<Candidate> m_best;
    std::uint64_t m_count = 0;
};

struct CloseFolder {
    void operator()(DIR* folder) const
    {
        ::closedir(folder);
    }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

Folder openFolder(const FileDescriptor& root, const std::string& path)
{
    FileDescriptor descriptor = root.openBelow(path, O_RDONLY | O_DIRECTORY);
    Folder folder(descriptor.isOpen() ? ::fdopendir(descriptor.get()) : nullptr);
    if (folder)
        descriptor.release();
    return folder;
}

bool isHidden(const dirent& entry)
{
    return entry.d_name[0] == '.';
}

/// The status of an entry, links not followed; nothing if it cannot be examined.
std::optional<struct stat> statusOf(const Folder& folder, const dirent& entry)
{
    struct stat status { };
    if (::fstatat(::dirfd(folder.get()), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return status;
}

bool isFolder(const Folder& folder, const dirent& entry)
{
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    const auto status = statusOf(folder, entry);
    return status && S_ISDIR(status->st_mode);
}

bool mayBeHistory(const dirent& entry)
{
    const bool mayBeRegular = entry.d_type == DT_REG || entry.d_type == DT_UNKNOWN;
    return mayBeRegular && std::string_view(entry.d_name).ends_with(".jsonl");
}

/// Walks the folders below a root with only one open at a time, however deep they are.
class Walk {
public:
    explicit Walk(const FileDescriptor& root)
        : m_root(root)
    { }

    HistoryFiles files()
    {
        list(".", {});
        while (!m_pending.empty()) {
            const std::string folder = std::move(m_pending.back());
            m_pending.pop_back();
            list(folder, folder + '/');
        }
        return m_best.take();
    }

private:
    void list(const std::string& path, const std::string& prefix)
    {
        const Folder folder = openFolder(m_root, path);
        if (!folder)
            return;
        while (const dirent* const entry = ::readdir(folder.get())) {
            if (isHidden(*entry))
                continue;
            if (isFolder(folder, *entry)) {
                m_pending.push_back(prefix + entry->d_name);
            } else if (mayBeHistory(*entry)) {
                const auto status = statusOf(folder, *entry);
                if (status && S_ISREG(status->st_mode))
                    m_best.offer(prefix, entry->d_name, *status);
            }
        }
    }

    const FileDescriptor& m_root;
    std::vector<std::string> m_pending;
    BestCandidates m_best;
};

FileError lastError()
{
    return {std::error_code(errno, std::system_category())};
}

/// Reads until `size` bytes or the end of the file; the number of bytes read, or nothing on an error.
std::optional<std::size_t> readAt(const FileDescriptor& file, char* buffer, std::size_t size, off_t offset)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = ::pread(file.get(), buffer + done, size - done, offset + static_cast<off_t>(done));
        if (count == 0)
            break;
        if (count > 0)
            done += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return std::nullopt;
    }
    return done;
}

} // namespace

HistoryFiles LocalUsageScanner::jsonlFiles(const FileDescriptor& root)
{
    return Walk(root).files();
}

LocalUsageScanner::TailReader::TailReader()
    : m_buffer(std::make_unique_for_overwrite<char[]>(tailSize))
{ }

LocalUsageScanner::TailReader::~TailReader()
{
    ::explicit_bzero(m_buffer.get(), m_filled); // the compiler may drop a plain memset of memory that is not read again
}

std::variant<HistoryTail, FileError> LocalUsageScanner::TailReader::tailLines(const FileDescriptor& root,
                                                                              const std::string& path)
{
    // Without O_NONBLOCK, opening a pipe in the file's place would block until it has a writer.
    const FileDescriptor file = root.openBelow(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat status { };
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0)
        return lastError();
    if (!S_ISREG(status.st_mode))
        return FileError{std::make_error_code(std::errc::not_supported)};
    constexpr off_t limit = tailSize;
    HistoryTail tail;
    tail.isPartial = status.st_size > limit;
    const off_t offset = tail.isPartial ? status.st_size - limit : 0;
    const auto wanted = static_cast<std::size_t>(status.st_size - offset);
    m_filled = std::max(m_filled, wanted);
    const auto size = readAt(file, m_buffer.get(), wanted, offset);
    if (!size)
        return lastError();
    tail.lines = HistoryLines(std::string_view(m_buffer.get(), *size));
    if (tail.isPartial)
        tail.lines = tail.lines.withoutFirst();
    return tail;
}

} // namespace tallyfox
