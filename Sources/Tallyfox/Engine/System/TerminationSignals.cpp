#include "Tallyfox/Engine/System/TerminationSignals.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace tallyfox {

namespace {

bool isIgnored(int signal)
{
    struct sigaction action { };
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

/// Without those that whoever started the program had it ignore, as `nohup` does.
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

class TerminationSignals::Private {
public:
    Private()
        : m_signals(endingSignals())
    {
        pthread_sigmask(SIG_BLOCK, &m_signals, &m_before);
        m_descriptor = signalfd(-1, &m_signals, SFD_CLOEXEC | SFD_NONBLOCK);
    }
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;
    ~Private()
    {
        close(m_descriptor);
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }

    sigset_t m_signals;
    sigset_t m_before{};
    int m_descriptor = -1;
    std::optional<int> m_received;
};

TerminationSignals::TerminationSignals(QObject* parent)
    : QObject(parent)
    , m(std::make_unique<Private>())
{ }

void TerminationSignals::watch()
{
    auto* notifier = new QSocketNotifier(m->m_descriptor, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        signalfd_siginfo information{};
        if (read(m->m_descriptor, &information, sizeof information) != ssize_t{sizeof information})
            return;
        m->m_received = static_cast<int>(information.ssi_signo);
        Q_EMIT received();
    });
}

TerminationSignals::~TerminationSignals()
{
    qDeleteAll(findChildren<QSocketNotifier*>()); // before the descriptor it watches is closed
}

void TerminationSignals::dieOfReceived() const
{
    if (!m->m_received)
        return;
    std::signal(*m->m_received, SIG_DFL);
    pthread_sigmask(SIG_UNBLOCK, &m->m_signals, nullptr);
    std::raise(*m->m_received);
}

} // namespace tallyfox
