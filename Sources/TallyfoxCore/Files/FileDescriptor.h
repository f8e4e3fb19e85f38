#pragma once

#include <string>
#include <sys/types.h>
#include <utility>
#include <variant>

// Where an offset has 32 bits otherwise, a history above 2 GiB could not be opened.
#if _FILE_OFFSET_BITS != 64
#error "compile with _FILE_OFFSET_BITS=64, as cmake/TallyfoxOptions.cmake says"
#endif

namespace tallyfox {

/// Owns an open file descriptor, or none.
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor = -1)
        : m_descriptor(descriptor)
    { }
    FileDescriptor(FileDescriptor&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
    { }
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~FileDescriptor();

    [[nodiscard]] int get() const
    {
        return m_descriptor;
    }
    [[nodiscard]] bool isOpen() const
    {
        return m_descriptor >= 0;
    }
    /// Gives up ownership of the descriptor.
    int release()
    {
        return std::exchange(m_descriptor, -1);
    }

    /// Opens a folder for listing, following links. On an error the result is not open and `errno` is set.
    static FileDescriptor openFolder(const char* path);

    /// Opens `path` below this folder with `flags` and O_CLOEXEC, following no symbolic link on the way. The path may
    /// be longer than PATH_MAX. On an error the result is not open and `errno` is set.
    [[nodiscard]] FileDescriptor openBelow(const std::string& path, int flags) const;

private:
    int m_descriptor;
};

} // namespace tallyfox
