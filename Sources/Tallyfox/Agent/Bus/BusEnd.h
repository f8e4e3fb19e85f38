#pragma once

#include <QDBusConnection>
#include <QObject>

namespace tallyfox {

/// Hears of the end of a connection, which the bus library tells by a signal of its own making.
class BusEnd : public QObject {
    Q_OBJECT

public:
    BusEnd(QDBusConnection bus, QObject* parent)
        : QObject(parent)
    {
        bus.connect(QString{}, QStringLiteral("/org/freedesktop/DBus/Local"),
                    QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                    SIGNAL(happened()));
    }

Q_SIGNALS:
    void happened();
};

} // namespace tallyfox
