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

/// The agent as the holder of a lock beside a socket, both in a folder that only the user can enter. The lock, which
/// the system gives back however its holder ends, decides; a socket that a killed agent has left is replaced.
class SocketInstance : public SingleInstance {
    Q_OBJECT

public:
    /// `folder` may be anything: one that is no private folder of this user makes every claim impossible.
    SocketInstance(const QByteArray& folder, const QString& id, QObject* parent = nullptr);
    /// Removes the socket and gives the lock back. The lock's file stays: another start may have it open.
    ~SocketInstance() override;

    Claim claim() override;
    bool send(AgentAction action, std::chrono::milliseconds timeout) override;

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
    std::unique_ptr<QSocketNotifier> m_newcomers; ///< destroyed before the descriptor is closed
    QTimer m_pause;
    std::vector<std::unique_ptr<SocketPeer>> m_peers;
};

} // namespace tallyfox
