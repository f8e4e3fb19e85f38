#pragma once

#include <QObject>

#include <csignal>
#include <optional>

namespace tallyfox {

/// The system's wish that the program ends (Ctrl-C, a lost terminal, `kill`), as an event instead of sudden death: the
/// program can first end the processes it has started. To be made before any other thread, and so before a
/// QApplication, whose threads the signals would end the program through.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    /// The signals have their usual effect again.
    ~TerminationSignals() override;

    /// Reports what comes, and what has come since the object was made. Needs the application object. Once.
    void watch();

    /// Ends the program as the signal that has come would have done; returns when none has.
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
