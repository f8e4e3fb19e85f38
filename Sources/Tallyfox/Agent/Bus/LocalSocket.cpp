#include "Tallyfox/Agent/Bus/LocalSocket.h"

#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <poll.h>

namespace tallyfox {

namespace {

bool waitFor(const FileDescriptor& socket, short events, const QDeadlineTimer& deadline)
{
    pollfd wanted{.fd = socket.get(), .events = events, .revents = 0};
    for (;;) {
        const int count = poll(&wanted, 1, static_cast<int>(deadline.remainingTime()));
        if (count > 0)
            return true;
        if (count == 0 || errno != EINTR)
            return false;
    }
}

bool isTemporaryError()
{
    return errno == EAGAIN || errno == EINTR;
}

} // namespace

const sockaddr* LocalAddress::get() const
{
    return std::bit_cast<const sockaddr*>(&value);
}

std::optional<LocalAddress> localAddress(const QByteArray& name, bool isAbstract)
{
    const auto length = static_cast<std::size_t>(name.size());
    LocalAddress address;
    if (length == 0 || length >= sizeof address.value.sun_path)
        return std::nullopt;
    address.value.sun_family = AF_UNIX;
    std::memcpy(address.value.sun_path + (isAbstract ? 1 : 0), name.constData(), length);
    // One byte more than the name: the zero before an abstract name, or the one after a path.
    address.size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length);
    return address;
}

FileDescriptor newLocalSocket()
{
    return FileDescriptor{socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)};
}

FileDescriptor connectedSocket(const LocalAddress& address)
{
    FileDescriptor socket = newLocalSocket();
    // Local sockets connect at once or not at all: EAGAIN means that the listener's queue is full.
    if (!socket.isOpen() || connect(socket.get(), address.get(), address.size) != 0)
        return FileDescriptor{};
    return socket;
}

bool sendAll(const FileDescriptor& socket, const QByteArray& bytes, const QDeadlineTimer& deadline)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t count =
            send(socket.get(), bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done), MSG_NOSIGNAL);
        if (count > 0)
            done += count;
        else if (!isTemporaryError() || !waitFor(socket, POLLOUT, deadline))
            return false;
    }
    return true;
}

bool receiveMore(const FileDescriptor& socket, QByteArray& bytes, const QDeadlineTimer& deadline)
{
    std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t count = recv(socket.get(), buffer.data(), buffer.size(), 0);
        if (count > 0)
            bytes.append(buffer.data(), count);
        if (count >= 0)
            return count > 0;
        if (!isTemporaryError() || !waitFor(socket, POLLIN, deadline))
            return false;
    }
}

} // namespace tallyfox
