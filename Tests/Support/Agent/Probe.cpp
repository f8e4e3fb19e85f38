#include "Support/Agent/Probe.h"

#include <QDeadlineTimer>
#include <QProcessEnvironment>

#include <csignal>

namespace tallyfox::test {

Probe::Probe(const QString& program, const QStringList& arguments, const QStringList& environment)
{
    QProcessEnvironment whole = QProcessEnvironment::systemEnvironment();
    for (const QString& variable : environment) {
        const qsizetype sign = variable.indexOf(QLatin1Char('='));
        if (sign < 0)
            whole.remove(variable);
        else
            whole.insert(variable.left(sign), variable.mid(sign + 1));
    }
    m_process.setProcessEnvironment(whole);
    m_process.start(program, arguments);
}

Probe::~Probe()
{
    kill();
}

QString Probe::nextLine(std::chrono::milliseconds timeout)
{
    const QDeadlineTimer deadline{timeout};
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(static_cast<int>(deadline.remainingTime())) && !m_process.canReadLine())
            return {};
    }
    return QString::fromUtf8(m_process.readLine()).trimmed();
}

void Probe::sendSignal(int number)
{
    ::kill(static_cast<pid_t>(m_process.processId()), number);
}

void Probe::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

} // namespace tallyfox::test
