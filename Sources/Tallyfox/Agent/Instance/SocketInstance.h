#pragma once

#include "Tallyfox/Agent/Instance/SingleInstance.h"
#include "TallyfoxCore/Files/FileDescriptor.h"

#include <QByteArray>
#include <QSocketNotifier>
#include <QTimer>

#include <chrono>
#include <vector>

namespace tallyfox {

class SocketPeer;

/// The agent as the holder of a file lock, with a socket beside it, both in a private folder of the user. The lock
/// decides, because the system releases it however its holder ends; the socket of a killed agent is replaced.
class SocketInstance : public SingleInstance {
    Q_OBJECT

public:
    /// With any `folder` that is not a private folder of this user, every claim is impossible.
    SocketInstance(const QByteArray& folder, const QString& id, QObject* parent = nullptr);
    /// Removes the socket and releases the lock. The lock file stays: another start may have it open.
    ~SocketInstance() override;

    Claim claim() override;
    bool send(AgentAction action, const QByteArray& activationToken, std::chrono::milliseconds timeout) override;

    /// Whether a process of this user holds the socket, be it this one.
    [[nodiscard]] bool isListening() const;

private:
    bool listen();
    void accept();
    void pauseAfterFailure();
    void resume();
    void forget(const SocketPeer& peer);

    QByteArray m_folder;
    QByteArray m_socketPath;
    QByteArray m_lockPath;
    FileDescriptor m_lock;
    FileDescriptor m_socket;
    std::unique_ptr<QSocketNotifier> m_listenNotifier; ///< destroyed before the descriptor is closed
    QTimer m_pause;
    std::vector<std::unique_ptr<SocketPeer>> m_peers;
};

} // namespace tallyfox
