#include "Tallyfox/Agent/Instance/SocketInstance.h"

#include "Tallyfox/Agent/Bus/LocalSocket.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace tallyfox {

namespace {

constexpr std::chrono::milliseconds sendRetryInterval{10};
constexpr std::chrono::seconds acceptPause{1};
constexpr std::chrono::seconds peerTimeout{1};
constexpr qsizetype maxLineLength = 16;
constexpr std::size_t maxPeers = 16; ///< at a time; others wait in the kernel's queue
constexpr int backlog = 64;
constexpr mode_t privateFile = S_IRUSR | S_IWUSR;

/// Whether only this user can create files in it.
bool isPrivateFolder(const QByteArray& folder)
{
    struct stat status { };
    return folder.startsWith('/') && lstat(folder.constData(), &status) == 0 && S_ISDIR(status.st_mode)
        && status.st_uid == getuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

bool belongsToThisUser(const FileDescriptor& socket)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == getuid();
}

bool isAnswered(const LocalAddress& address, AgentAction action, const QDeadlineTimer& deadline)
{
    const FileDescriptor socket = connectedSocket(address);
    if (!socket.isOpen() || !belongsToThisUser(socket) || !sendAll(socket, QByteArray{toName(action)} + '\n', deadline))
        return false;
    QByteArray answer;
    while (answer.size() < 3 && receiveMore(socket, answer, deadline)) {
    }
    return answer == "ok\n";
}

} // namespace

/// A process that has connected to the agent's socket: it sends one line with the name of an action, and gets "ok". It
/// has one second and 16 bytes for that.
class SocketPeer : public QObject {
    Q_OBJECT

public:
    explicit SocketPeer(FileDescriptor socket)
        : m_socket(std::move(socket))
        , m_notifier(m_socket.get(), QSocketNotifier::Read)
    {
        connect(&m_notifier, &QSocketNotifier::activated, this, &SocketPeer::receive);
        connect(&m_timeout, &QTimer::timeout, this, &SocketPeer::finish);
        m_timeout.setSingleShot(true);
        m_timeout.start(peerTimeout);
    }

Q_SIGNALS:
    void asked(AgentAction action); ///< at most once, before `finished`
    /// At most once, and the last signal. For a queued connection, after which the object may be deleted.
    void finished();

private:
    void receive()
    {
        const QDeadlineTimer now{0};
        const bool isOpen = receiveMore(m_socket, m_received, now);
        const qsizetype end = m_received.indexOf('\n');
        if (isOpen && end < 0 && m_received.size() <= maxLineLength)
            return;
        if (const auto action = findAction(m_received.left(qMax<qsizetype>(end, 0)))) {
            sendAll(m_socket, "ok\n", now);
            Q_EMIT asked(*action);
        }
        finish();
    }

    void finish()
    {
        m_notifier.setEnabled(false);
        m_timeout.stop();
        Q_EMIT finished();
    }

    FileDescriptor m_socket;
    QSocketNotifier m_notifier; ///< destroyed before the descriptor is closed
    QTimer m_timeout;
    QByteArray m_received;
};

SocketInstance::SocketInstance(const QByteArray& folder, const QString& id, QObject* parent)
    : SingleInstance(parent)
    , m_folder(folder)
    , m_socketPath(folder + '/' + id.toUtf8() + ".socket")
    , m_lockPath(folder + '/' + id.toUtf8() + ".lock")
{ }

SocketInstance::~SocketInstance()
{
    if (m_socket.isOpen())
        unlink(m_socketPath.constData());
}

SingleInstance::Claim SocketInstance::claim()
{
    if (!isPrivateFolder(m_folder) || !localAddress(m_socketPath))
        return Claim::impossible;
    FileDescriptor lock{open(m_lockPath.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, privateFile)};
    if (!lock.isOpen())
        return Claim::impossible;
    if (flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        return errno == EWOULDBLOCK ? Claim::other : Claim::impossible;
    m_lock = std::move(lock);
    // Without a socket this process is still the agent, and receives nothing: a second agent would be worse.
    if (listen()) {
        m_listenNotifier = std::make_unique<QSocketNotifier>(m_socket.get(), QSocketNotifier::Read);
        connect(m_listenNotifier.get(), &QSocketNotifier::activated, this, &SocketInstance::accept);
        m_pause.setSingleShot(true);
        connect(&m_pause, &QTimer::timeout, this, &SocketInstance::resume);
    }
    return Claim::first;
}

bool SocketInstance::listen()
{
    const auto address = localAddress(m_socketPath);
    FileDescriptor socket = newLocalSocket();
    unlink(m_socketPath.constData());
    // Set before binding, the mode is that of the file from the start, so others can never connect.
    if (!socket.isOpen() || fchmod(socket.get(), privateFile) != 0
        || bind(socket.get(), address->get(), address->size) != 0 || ::listen(socket.get(), backlog) != 0)
        return false;
    m_socket = std::move(socket);
    return true;
}

void SocketInstance::accept()
{
    FileDescriptor socket{accept4(m_socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK)};
    if (!socket.isOpen()) {
        pauseAfterFailure();
        return;
    }
    if (!belongsToThisUser(socket))
        return;
    m_peers.push_back(std::make_unique<SocketPeer>(std::move(socket)));
    m_listenNotifier->setEnabled(m_peers.size() < maxPeers);
    const SocketPeer* peer = m_peers.back().get();
    connect(
        peer, &SocketPeer::asked, this, [this](AgentAction action) { Q_EMIT requested(action, {}); },
        Qt::QueuedConnection);
    connect(
        peer, &SocketPeer::finished, this, [this, peer] { forget(*peer); }, Qt::QueuedConnection);
}

void SocketInstance::pauseAfterFailure()
{
    // Otherwise a process without free descriptors would be notified of the same connection for ever.
    m_listenNotifier->setEnabled(false);
    m_pause.start(acceptPause);
}

void SocketInstance::resume()
{
    m_listenNotifier->setEnabled(m_peers.size() < maxPeers);
}

void SocketInstance::forget(const SocketPeer& peer)
{
    std::erase_if(m_peers, [&](const std::unique_ptr<SocketPeer>& each) { return each.get() == &peer; });
    m_listenNotifier->setEnabled(true);
}

bool SocketInstance::isListening() const
{
    const auto address = localAddress(m_socketPath);
    if (!address || !isPrivateFolder(m_folder))
        return false;
    const FileDescriptor socket = connectedSocket(*address);
    return socket.isOpen() && belongsToThisUser(socket);
}

bool SocketInstance::send(AgentAction action, const QByteArray& /*activationToken*/, std::chrono::milliseconds timeout)
{
    const QDeadlineTimer deadline{timeout};
    const auto address = localAddress(m_socketPath);
    // Without a lock file there has never been an agent.
    if (!address || !isPrivateFolder(m_folder) || access(m_lockPath.constData(), F_OK) != 0)
        return false;
    // An agent that is just starting may have its lock, but not its socket yet.
    while (!isAnswered(*address, action, deadline)) {
        if (deadline.hasExpired())
            return false;
        std::this_thread::sleep_for(sendRetryInterval);
    }
    return true;
}

} // namespace tallyfox

#include "SocketInstance.moc"
