#pragma once

#include "TallyfoxCore/Files/FileDescriptor.h"

#include <QByteArray>
#include <QDeadlineTimer>

#include <optional>
#include <sys/socket.h>
#include <sys/un.h>

namespace tallyfox {

/// The address of a local socket.
struct LocalAddress {
    sockaddr_un value{};
    socklen_t size = 0;

    [[nodiscard]] const sockaddr* get() const;
};

/// The address of a socket in the file system, or in the abstract namespace. Nothing for a name that is empty or longer
/// than the system allows (107 bytes).
std::optional<LocalAddress> localAddress(const QByteArray& name, bool isAbstract = false);

/// A non-blocking stream socket that children do not inherit.
FileDescriptor newLocalSocket();

/// A socket connected to `address`; not open when nobody listens or the queue is full.
FileDescriptor connectedSocket(const LocalAddress& address);

/// Sends all of `bytes`; false on an error or at `deadline`.
bool sendAll(const FileDescriptor& socket, const QByteArray& bytes, const QDeadlineTimer& deadline);

/// Waits for more bytes and appends them, 4,096 at most; false at the end of the stream, on an error or at `deadline`.
bool receiveMore(const FileDescriptor& socket, QByteArray& bytes, const QDeadlineTimer& deadline);

} // namespace tallyfox
