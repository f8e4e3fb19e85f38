#include "TallyfoxCore/Files/FileDescriptor.h"

#include <cerrno>
#include <climits>
#include <cstddef>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tallyfox {

namespace {

/// Opens a path of at most PATH_MAX bytes without following a link. Where the kernel has no `openat2`, or a sandbox
/// blocks it, only the last component is checked.
int openWithoutLinks(int folder, const char* path, int flags)
{
    open_how how{};
    how.flags = static_cast<__u64>(flags | O_CLOEXEC | O_NOFOLLOW);
    how.resolve = RESOLVE_NO_SYMLINKS;
    long descriptor = -1;
    do {
        descriptor = ::syscall(SYS_openat2, folder, path, &how, sizeof how);
        if (descriptor < 0 && (errno == ENOSYS || errno == EPERM))
            descriptor = ::openat(folder, path, flags | O_CLOEXEC | O_NOFOLLOW);
    } while (descriptor < 0 && errno == EINTR);
    return static_cast<int>(descriptor);
}

/// How much of `path` one call can take: all of it, or up to the last separator before PATH_MAX.
std::size_t leadingPart(const std::string& path)
{
    return path.size() < PATH_MAX ? path.npos : path.rfind('/', PATH_MAX - 1);
}

} // namespace

FileDescriptor::~FileDescriptor()
{
    if (isOpen())
        ::close(m_descriptor);
}

FileDescriptor FileDescriptor::openFolder(const char* path)
{
    return FileDescriptor(::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

FileDescriptor FileDescriptor::openBelow(const std::string& path, int flags) const
{
    FileDescriptor folder;
    std::string rest = path;
    for (std::size_t part = leadingPart(rest); part != rest.npos; part = leadingPart(rest)) {
        const int from = folder.isOpen() ? folder.get() : m_descriptor;
        FileDescriptor next(openWithoutLinks(from, rest.substr(0, part).c_str(), O_PATH | O_DIRECTORY));
        if (!next.isOpen())
            return next;
        folder = std::move(next);
        rest.erase(0, part + 1);
    }
    return FileDescriptor(openWithoutLinks(folder.isOpen() ? folder.get() : m_descriptor, rest.c_str(), flags));
}

} // namespace tallyfox
