#pragma once

#include "Tallyfox/Agent/Instance/SingleInstance.h"
#include "TallyfoxCore/Files/FileDescriptor.h"

#include <QByteArray>
#include <QObject>

namespace tallyfox {

/// A process that has connected to the agent's socket: one line with the name of a request, answered by "ok". It has
/// one second and 16 bytes for that.
class SocketPeer : public QObject {
    Q_OBJECT

public:
    explicit SocketPeer(FileDescriptor socket);
    ~SocketPeer() override;

Q_SIGNALS:
    void asked(InstanceRequest request); ///< at most once, before `finished`
    /// At most once: nothing more is to come. For a queued connection, after which the object may be deleted.
    void finished();

private:
    void receive();
    void finish();

    FileDescriptor m_socket;
    QByteArray m_received;
    bool m_isFinished = false;
};

} // namespace tallyfox
