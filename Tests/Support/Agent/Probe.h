#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <chrono>

namespace tallyfox::test {

/// A program that tells in lines on its standard output what happens to it. Killed with the object.
class Probe {
public:
    /// `environment` stands beside the usual one: "NAME=value", or "NAME" for a variable that must not be set.
    Probe(const QString& program, const QStringList& arguments, const QStringList& environment);
    ~Probe();
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    /// The next line, waiting for it as long as `limit`; null when none comes.
    QString nextLine(std::chrono::milliseconds limit = std::chrono::seconds{20});

    [[nodiscard]] QProcess& process()
    {
        return m_process;
    }

    void sendSignal(int number);
    /// Ends the program without its knowing, and waits until it is gone.
    void kill();

private:
    QProcess m_process;
};

} // namespace tallyfox::test
