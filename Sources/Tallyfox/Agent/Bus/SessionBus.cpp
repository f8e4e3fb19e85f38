#include "Tallyfox/Agent/Bus/SessionBus.h"

#include "Tallyfox/Agent/Bus/LocalSocket.h"

#include <QDeadlineTimer>
#include <QList>
#include <QString>
#include <QtEndian>

#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace tallyfox {

namespace {

constexpr const char* noBusAddress = "disabled:"; ///< a transport that does not exist
constexpr qsizetype maxReplySize = 4096; ///< bytes of a bus's first replies, which usually have a few hundred

/// What a short-lived connection to a bus has found out.
struct BusFindings {
    bool answers = false;
    bool hasName = false; ///< the name that was asked for has an owner
};

/// A length in wire format, little-endian; at most 255 here.
QByteArray toWireLength(qsizetype length)
{
    return QByteArray{4, '\0'}.replace(0, 1, QByteArray{1, static_cast<char>(length)});
}

/// A string in wire format.
QByteArray toWire(const QByteArray& text)
{
    return toWireLength(text.size()) + text + '\0';
}

/// One field of a message's header: its code, and the type and value of its variant.
QByteArray headerField(char code, char type, const QByteArray& value)
{
    return QByteArray{} + code + '\1' + type + '\0' + value;
}

/// Each part of a message is aligned to 8 bytes.
QByteArray padded(const QByteArray& bytes)
{
    return bytes + QByteArray{(8 - bytes.size() % 8) % 8, '\0'};
}

/// A call of the bus's own interface, in wire format; with a string as its argument unless that is null.
QByteArray busCall(char serial, const char* method, const QByteArray& argument = {})
{
    const QByteArray bus = toWire("org.freedesktop.DBus");
    const QByteArray signature = argument.isNull() ? QByteArray{} : padded(headerField(8, 'g', {"\1s\0", 3}));
    const QByteArray fields = padded(headerField(1, 'o', toWire("/org/freedesktop/DBus")))
        + padded(headerField(2, 's', bus)) + padded(headerField(3, 's', toWire(method))) + signature
        + headerField(6, 's', bus);
    const QByteArray body = argument.isNull() ? QByteArray{} : toWire(argument);
    return padded(QByteArray{"l\1\0\1", 4} + toWireLength(body.size()) + serial + QByteArray{3, '\0'}
                  + toWireLength(fields.size()) + fields)
        + body;
}

constexpr char replyType = 2;
constexpr char signalType = 4;

/// Takes one message from the beginning of `received`, after what is missing has arrived, and returns its type.
std::optional<char> takeMessage(const FileDescriptor& socket, QByteArray& received, const QDeadlineTimer& deadline)
{
    constexpr qsizetype fixedSize = 16; // ending with the lengths of the body and, after a serial, of the fields
    const auto receive = [&](qint64 size) {
        while (received.size() < size && size <= maxReplySize && receiveMore(socket, received, deadline)) {
        }
        return received.size() >= size;
    };
    const auto lengthAt = [&](qsizetype position) -> qint64 {
        const char* bytes = received.constData() + position;
        return received[0] == 'l' ? qFromLittleEndian<quint32>(bytes) : qFromBigEndian<quint32>(bytes);
    };
    if (!receive(fixedSize))
        return std::nullopt;
    const qint64 fieldsSize = (lengthAt(12) + 7) / 8 * 8;
    const qint64 size = fixedSize + fieldsSize + lengthAt(4);
    if (!receive(size))
        return std::nullopt;
    const char type = received[1];
    received.remove(0, static_cast<qsizetype>(size));
    return type;
}

/// The reply to one of our calls, after the signals that the bus sends on its own.
bool takesReply(const FileDescriptor& socket, QByteArray& received, const QDeadlineTimer& deadline)
{
    std::optional<char> type;
    do {
        type = takeMessage(socket, received, deadline);
    } while (type == signalType && !deadline.hasExpired());
    return type == replyType;
}

/// Says Hello, as every connection has to, and looks the name up unless it is null.
BusFindings introduce(const LocalAddress& address, const QByteArray& name, const QDeadlineTimer& deadline)
{
    const FileDescriptor socket = connectedSocket(address);
    const QByteArray user = QByteArray::number(getuid()).toHex();
    if (!socket.isOpen() || !sendAll(socket, QByteArray{"\0AUTH EXTERNAL ", 15} + user + "\r\n", deadline))
        return {};
    QByteArray answer;
    while (!answer.contains('\n')) {
        if (answer.size() > maxReplySize || !receiveMore(socket, answer, deadline))
            return {};
    }
    // Only the owner's name is a reply; without an owner it is an error.
    const QByteArray lookup = name.isNull() ? QByteArray{} : busCall(2, "GetNameOwner", name);
    if (!answer.startsWith("OK ") || !sendAll(socket, "BEGIN\r\n" + busCall(1, "Hello") + lookup, deadline))
        return {};
    answer.remove(0, answer.indexOf('\n') + 1);
    BusFindings findings{.answers = takesReply(socket, answer, deadline)};
    findings.hasName = findings.answers && !name.isNull() && takesReply(socket, answer, deadline);
    return findings;
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

BusFindings examineAddress(const QByteArray& address, const QByteArray& name, const QDeadlineTimer& deadline)
{
    const QByteArray path = findValue("path", address);
    const QByteArray abstractName = findValue("abstract", address);
    if (address == noBusAddress)
        return {};
    if (!address.startsWith("unix:") || (path.isNull() && abstractName.isNull()))
        return {.answers = true};
    const auto socketAddress = path.isNull() ? localAddress(abstractName, true) : localAddress(path);
    return socketAddress ? introduce(*socketAddress, name, deadline) : BusFindings{};
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

/// Whether a bus lets this user in and answers within `timeout`, and whether `name` has an owner there; blocks as long.
/// Addresses other than local sockets are not tried, and count as answering.
BusFindings examineBus(const QByteArray& address, std::chrono::milliseconds timeout, const QByteArray& name = {})
{
    const QDeadlineTimer deadline{timeout};
    for (const QByteArray& one : address.split(';')) {
        const BusFindings findings = one.isEmpty() ? BusFindings{} : examineAddress(one, name, deadline);
        if (findings.answers)
            return findings;
    }
    return {};
}

QDBusConnection noConnection()
{
    return QDBusConnection{QString{}};
}

} // namespace

bool chooseSessionBus(const QByteArray& name)
{
    constexpr std::chrono::seconds timeout{2}; // a bus may be slow while a session starts
    const BusFindings findings = examineBus(sessionBusAddress(), timeout, name);
    if (!findings.answers)
        qputenv("DBUS_SESSION_BUS_ADDRESS", noBusAddress);
    return findings.hasName;
}

QDBusConnection answeringSessionBus(std::chrono::milliseconds timeout)
{
    return examineBus(sessionBusAddress(), timeout).answers ? QDBusConnection::sessionBus() : noConnection();
}

QDBusConnection answeringSystemBus(std::chrono::milliseconds timeout)
{
    return examineBus(systemBusAddress(), timeout).answers ? QDBusConnection::systemBus() : noConnection();
}

} // namespace tallyfox
