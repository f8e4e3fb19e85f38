#include "Tallyfox/Agent/Bus/SessionBus.h"

#include "Tallyfox/Agent/Bus/LocalSocket.h"

#include <QDeadlineTimer>
#include <QList>
#include <QString>

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace tallyfox {

namespace {

constexpr const char* noBusAddress = "disabled:"; ///< a transport that does not exist
constexpr qsizetype maxReplySize = 4096; ///< bytes of a bus's first reply, which usually has a hundred

/// A length in wire format, little-endian; at most 255 here.
QByteArray toWireLength(const QByteArray& bytes)
{
    return QByteArray{4, '\0'}.replace(0, 1, QByteArray{1, static_cast<char>(bytes.size())});
}

/// One field of a message's header: its code, and the type and value of its variant.
QByteArray headerField(char code, char type, const QByteArray& value)
{
    return QByteArray{} + code + '\1' + type + '\0' + toWireLength(value) + value + '\0';
}

/// Each part of a message is aligned to 8 bytes.
QByteArray padded(const QByteArray& bytes)
{
    return bytes + QByteArray{(8 - bytes.size() % 8) % 8, '\0'};
}

/// The call that every connection has to begin with, in wire format (serial 1, no body).
QByteArray helloCall()
{
    const QByteArray bus = "org.freedesktop.DBus";
    const QByteArray fields = padded(headerField(1, 'o', "/org/freedesktop/DBus")) + padded(headerField(2, 's', bus))
        + padded(headerField(3, 's', "Hello")) + headerField(6, 's', bus);
    return padded(QByteArray{"l\1\0\1\0\0\0\0\1\0\0\0", 12} + toWireLength(fields) + fields);
}

/// Whether the reply to Hello is a method return: that is type 2, in the second byte.
bool helloSucceeds(const FileDescriptor& socket, QByteArray answer, const QDeadlineTimer& deadline)
{
    while (answer.size() < 2) {
        if (!receiveMore(socket, answer, deadline))
            return false;
    }
    return answer[1] == 2;
}

bool authenticates(const LocalAddress& address, const QDeadlineTimer& deadline)
{
    const FileDescriptor socket = connectedSocket(address);
    const QByteArray user = QByteArray::number(getuid()).toHex();
    if (!socket.isOpen() || !sendAll(socket, QByteArray{"\0AUTH EXTERNAL ", 15} + user + "\r\n", deadline))
        return false;
    QByteArray answer;
    while (!answer.contains('\n')) {
        if (answer.size() > maxReplySize || !receiveMore(socket, answer, deadline))
            return false;
    }
    return answer.startsWith("OK ") && sendAll(socket, "BEGIN\r\n" + helloCall(), deadline)
        && helloSucceeds(socket, answer.mid(answer.indexOf('\n') + 1), deadline);
}

/// The value of one key in "unix:path=/run/user/1000/bus,guid=…"; null without that key.
QByteArray findValue(const QByteArray& key, const QByteArray& address)
{
    for (const QByteArray& pair : address.mid(address.indexOf(':') + 1).split(',')) {
        if (pair.startsWith(key + '='))
            return QByteArray::fromPercentEncoding(pair.mid(key.size() + 1));
    }
    return {};
}

bool addressAnswers(const QByteArray& address, const QDeadlineTimer& deadline)
{
    const QByteArray path = findValue("path", address);
    const QByteArray abstractName = findValue("abstract", address);
    if (address == noBusAddress)
        return false;
    if (!address.startsWith("unix:") || (path.isNull() && abstractName.isNull()))
        return true;
    const auto socketAddress = path.isNull() ? localAddress(abstractName, true) : localAddress(path);
    return socketAddress && authenticates(*socketAddress, deadline);
}

/// Empty when there is no session bus; never the address of one that would have to be started first.
QByteArray sessionBusAddress()
{
    QByteArray given = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    if (!given.isEmpty() || !folder.startsWith('/'))
        return given;
    const QByteArray socket = folder + "/bus";
    struct stat status { };
    if (stat(socket.constData(), &status) != 0 || !S_ISSOCK(status.st_mode) || status.st_uid != getuid())
        return {};
    return "unix:path=" + socket.toPercentEncoding("/");
}

QByteArray systemBusAddress()
{
    const QByteArray given = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    return given.isEmpty() ? QByteArrayLiteral("unix:path=/run/dbus/system_bus_socket") : given;
}

/// Whether a bus lets this user in and answers within `timeout`; blocks as long. Addresses other than local sockets are
/// not tried, and count as answering.
bool busAnswers(const QByteArray& address, std::chrono::milliseconds timeout)
{
    const QDeadlineTimer deadline{timeout};
    const QList<QByteArray> addresses = address.split(';');
    return std::any_of(addresses.begin(), addresses.end(),
                       [&](const QByteArray& one) { return !one.isEmpty() && addressAnswers(one, deadline); });
}

QDBusConnection noConnection()
{
    return QDBusConnection{QString{}};
}

} // namespace

bool chooseSessionBus()
{
    constexpr std::chrono::seconds timeout{2}; // a bus may be slow while a session starts
    if (busAnswers(sessionBusAddress(), timeout))
        return true;
    qputenv("DBUS_SESSION_BUS_ADDRESS", noBusAddress);
    return false;
}

QDBusConnection answeringSessionBus(std::chrono::milliseconds timeout)
{
    return busAnswers(sessionBusAddress(), timeout) ? QDBusConnection::sessionBus() : noConnection();
}

QDBusConnection answeringSystemBus(std::chrono::milliseconds timeout)
{
    return busAnswers(systemBusAddress(), timeout) ? QDBusConnection::systemBus() : noConnection();
}

} // namespace tallyfox
