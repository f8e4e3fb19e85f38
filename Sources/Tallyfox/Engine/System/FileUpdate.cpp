#include "Tallyfox/Engine/System/FileUpdate.h"

#include "TallyfoxCore/Files/FileDescriptor.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace tallyfox::FileUpdate {

namespace {

constexpr std::chrono::milliseconds longestWait{500};
constexpr std::chrono::milliseconds betweenTries{1};

/// Creates the missing folders of a path. Existing ones are not changed.
void makeFolders(const std::filesystem::path& folder)
{
    if (folder.has_parent_path() && folder.parent_path() != folder)
        makeFolders(folder.parent_path());
    mkdir(folder.c_str(), S_IRWXU); // a failure shows when a file is created in it
}

/// The target if `file` is a symbolic link, so that the link itself is not replaced.
std::filesystem::path resolveLinks(const std::filesystem::path& file)
{
    std::error_code error;
    const auto target = std::filesystem::canonical(file, error);
    return error ? file : target;
}

std::optional<std::string> readContent(const FileDescriptor& file)
{
    std::string content(maximumSize + 1, '\0'); // one byte more, to detect a file that is too large
    std::size_t size = 0;
    while (size < content.size()) {
        const ssize_t count = ::read(file.get(), content.data() + size, content.size() - size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        size += static_cast<std::size_t>(count);
    }
    content.resize(size);
    return size <= maximumSize ? std::optional{std::move(content)} : std::nullopt;
}

bool writeAll(const FileDescriptor& file, std::string_view content)
{
    while (!content.empty()) {
        const ssize_t count = ::write(file.get(), content.data(), content.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        content.remove_prefix(static_cast<std::size_t>(count));
    }
    return fsync(file.get()) == 0;
}

/// The file that will replace another. It is also the lock: the process that has locked the file of that name may
/// replace the other one. A process that dies leaves at most one draft behind, which the next process reuses.
class Draft {
public:
    explicit Draft(const std::filesystem::path& file)
        : m_name(file.native() + ".new")
        , m_file(openLocked(m_name))
    { }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;
    ~Draft()
    {
        if (m_file.isOpen() && !m_isMoved)
            unlink(m_name.c_str());
    }

    [[nodiscard]] bool isLocked() const
    {
        return m_file.isOpen();
    }

    bool moveTo(const std::filesystem::path& file, std::string_view content)
    {
        m_isMoved =
            ftruncate(m_file.get(), 0) == 0 && writeAll(m_file, content) && rename(m_name.c_str(), file.c_str()) == 0;
        return m_isMoved;
    }

private:
    /// False for a draft that was renamed or removed while this process waited for its lock.
    static bool hasName(const FileDescriptor& file, const std::string& name)
    {
        struct stat opened { };
        struct stat named { };
        return fstat(file.get(), &opened) == 0 && lstat(name.c_str(), &named) == 0 && opened.st_dev == named.st_dev
            && opened.st_ino == named.st_ino;
    }

    static FileDescriptor openLocked(const std::string& name)
    {
        const auto deadline = std::chrono::steady_clock::now() + longestWait;
        while (true) {
            FileDescriptor file{open(name.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR)};
            const bool isLocked = file.isOpen() && flock(file.get(), LOCK_EX | LOCK_NB) == 0;
            if (!file.isOpen() || (isLocked && hasName(file, name)))
                return file;
            if (std::chrono::steady_clock::now() >= deadline)
                return FileDescriptor{};
            std::this_thread::sleep_for(betweenTries);
        }
    }

    std::string m_name;
    FileDescriptor m_file;
    bool m_isMoved = false;
};

bool store(const std::filesystem::path& file, std::string_view content)
{
    Draft draft{file};
    return draft.isLocked() && draft.moveTo(file, content);
}

} // namespace

std::variant<std::string, Absent, Unreadable> read(const std::filesystem::path& file)
{
    // Without O_NONBLOCK, opening a pipe of that name would block.
    const FileDescriptor opened{open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
    if (!opened.isOpen() && (errno == ENOENT || errno == ENOTDIR))
        return Absent{};
    struct stat status { };
    if (!opened.isOpen() || fstat(opened.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return Unreadable{};
    auto content = readContent(opened);
    if (!content)
        return Unreadable{};
    return std::move(*content);
}

std::filesystem::path backupPath(const std::filesystem::path& file)
{
    return file.native() + ".backup";
}

bool apply(const std::filesystem::path& file, const Change& change)
{
    const auto target = resolveLinks(file);
    makeFolders(target.parent_path());
    Draft draft{target};
    if (!draft.isLocked())
        return false;
    const auto before = read(target);
    if (std::holds_alternative<Unreadable>(before))
        return false;
    const auto* const content = std::get_if<std::string>(&before);
    const auto wanted = change(content ? *content : std::string{});
    if (!wanted)
        return true;
    if (wanted->keepsBackup && content && !store(backupPath(target), *content))
        return false;
    return draft.moveTo(target, wanted->content);
}

} // namespace tallyfox::FileUpdate
