#include "Support/Agent/PrivateBus.h"

#include <QFile>
#include <QUuid>

namespace tallyfox::test {

namespace {

// Without service folders: a test's bus must not start the services installed on the machine.
constexpr const char* configuration =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=%1</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

PrivateBus::PrivateBus()
{
    QFile file{m_folder.filePath(QStringLiteral("bus.conf"))};
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(QString::fromLatin1(configuration).arg(m_folder.path()).toUtf8());
    file.close();
    m_daemon.setProgram(QStringLiteral("dbus-daemon"));
    m_daemon.setArguments({QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                           QStringLiteral("--config-file=") + file.fileName()});
    m_daemon.start();
    while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead(10'000)) {
    }
    m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus()
{
    for (const QString& name : m_connections)
        QDBusConnection::disconnectFromBus(name);
    kill();
}

QDBusConnection PrivateBus::connect()
{
    m_connections += QUuid::createUuid().toString();
    return QDBusConnection::connectToBus(m_address, m_connections.back());
}

void PrivateBus::kill()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
}

} // namespace tallyfox::test
