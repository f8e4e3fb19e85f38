#include "Tallyfox/Agent/Instance/SocketPeer.h"

#include "Tallyfox/Agent/Bus/LocalSocket.h"
#include "Tallyfox/Agent/Instance/InstanceRequests.h"

#include <QSocketNotifier>
#include <QTimer>

#include <chrono>

namespace tallyfox {

namespace {

constexpr std::chrono::seconds patience{1};
constexpr qsizetype longestLine = 16;

} // namespace

SocketPeer::SocketPeer(FileDescriptor socket)
    : m_socket(std::move(socket))
{
    auto* notifier = new QSocketNotifier(m_socket.get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &SocketPeer::receive);
    auto* timer = new QTimer(this);
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, this, &SocketPeer::finish);
    timer->start(patience);
}

SocketPeer::~SocketPeer()
{
    qDeleteAll(findChildren<QSocketNotifier*>()); // before the descriptor it watches is closed
}

void SocketPeer::receive()
{
    const QDeadlineTimer now{0};
    const bool isOpen = receiveMore(m_socket, m_received, now);
    const qsizetype end = m_received.indexOf('\n');
    if (isOpen && end < 0 && m_received.size() <= longestLine)
        return;
    if (const auto request = requestNamed(m_received.left(qMax<qsizetype>(end, 0)))) {
        sendAll(m_socket, "ok\n", now);
        Q_EMIT asked(*request);
    }
    finish();
}

void SocketPeer::finish()
{
    if (m_isFinished)
        return;
    m_isFinished = true;
    for (QSocketNotifier* notifier : findChildren<QSocketNotifier*>())
        notifier->setEnabled(false);
    Q_EMIT finished();
}

} // namespace tallyfox
