#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <chrono>

namespace tallyfox::test {

/// A program that reports events as lines on its standard output. Killed with the object.
class Probe {
public:
    /// `environment` is added to the inherited one: "NAME=value", or "NAME" to unset a variable.
    Probe(const QString& program, const QStringList& arguments, const QStringList& environment);
    ~Probe();
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    /// The next line; null when none comes within `timeout`.
    QString nextLine(std::chrono::milliseconds timeout = std::chrono::seconds{20});

    [[nodiscard]] QProcess& process()
    {
        return m_process;
    }

    void sendSignal(int number);
    /// Kills the program with SIGKILL, and waits until it has ended.
    void kill();

private:
    QProcess m_process;
};

} // namespace tallyfox::test
