#pragma once

#include <QObject>

#include <csignal>
#include <optional>

namespace tallyfox {

/// Turns the signals that end a program (Ctrl-C, a lost terminal, `kill`) into an event, so that the program can first
/// end the processes it has started. Construct it before any other thread, and so before a QApplication: the signals
/// would otherwise end the program through those threads.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    /// Restores the usual effect of the signals.
    ~TerminationSignals() override;

    /// Starts to emit `received`, also for a signal since construction. Needs the application object. Call it once.
    void watch();

    /// Ends the program by the signal that was received; returns if there was none.
    void raiseReceived() const;

Q_SIGNALS:
    void received();

private:
    sigset_t m_signals;
    sigset_t m_before{};
    int m_descriptor = -1;
    std::optional<int> m_received;
};

} // namespace tallyfox
