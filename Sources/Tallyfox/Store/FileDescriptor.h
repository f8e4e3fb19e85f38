#pragma once

#include <unistd.h>
#include <utility>

namespace tallyfox {

/// Owns one open file descriptor, or none.
class FileDescriptor {
public:
    FileDescriptor() = default;
    /// Takes `descriptor` over; a negative one stands for none.
    explicit FileDescriptor(int descriptor)
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
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor()
    {
        close();
    }

    [[nodiscard]] int get() const
    {
        return m_descriptor;
    }
    [[nodiscard]] bool isOpen() const
    {
        return m_descriptor >= 0;
    }
    /// Closes early; errors of closing are ignored, for nothing could be done about them.
    void close()
    {
        if (isOpen())
            ::close(std::exchange(m_descriptor, -1));
    }

private:
    int m_descriptor = -1;
};

} // namespace tallyfox
