#include "Tallyfox/Engine/System/TerminationSignals.h"

#include <QSocketNotifier>

#include <sys/signalfd.h>
#include <unistd.h>

namespace tallyfox {

namespace {

bool isIgnored(int signal)
{
    struct sigaction action { };
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

/// Without those that the parent process made this one ignore, as `nohup` does.
sigset_t endingSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        if (!isIgnored(signal))
            sigaddset(&signals, signal);
    }
    return signals;
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent)
    : QObject(parent)
    , m_signals(endingSignals())
{
    pthread_sigmask(SIG_BLOCK, &m_signals, &m_before);
    m_descriptor = signalfd(-1, &m_signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

TerminationSignals::~TerminationSignals()
{
    qDeleteAll(findChildren<QSocketNotifier*>()); // before their descriptor is closed
    close(m_descriptor);
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

void TerminationSignals::watch()
{
    auto* notifier = new QSocketNotifier(m_descriptor, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        signalfd_siginfo information{};
        if (read(m_descriptor, &information, sizeof information) != ssize_t{sizeof information})
            return;
        m_received = static_cast<int>(information.ssi_signo);
        Q_EMIT received();
    });
}

void TerminationSignals::raiseReceived() const
{
    if (!m_received)
        return;
    std::signal(*m_received, SIG_DFL);
    pthread_sigmask(SIG_UNBLOCK, &m_signals, nullptr);
    std::raise(*m_received);
}

} // namespace tallyfox
