#pragma once

#include "Tallyfox/Agent/Instance/SingleInstance.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QStringList>
#include <QVariant>

#include <chrono>

namespace tallyfox {

/// The agent as a name on a bus. Its interface is org.freedesktop.Application, so that desktops can activate it like
/// any other program.
class BusInstance : public SingleInstance, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    BusInstance(const QDBusConnection& bus, const QString& id, QObject* parent = nullptr);
    /// Releases the name.
    ~BusInstance() override;

    Claim claim() override;
    bool send(AgentAction action, const QByteArray& activationToken, std::chrono::milliseconds timeout) override;

public Q_SLOTS:
    // The names are those of the interface.
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void Open(const QStringList& addresses, const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(const QString& name, const QVariantList& parameters,
                                     const QVariantMap& platformData);

Q_SIGNALS:
    void asked(AgentAction action, const QByteArray& activationToken); ///< by a bus call; `requested` follows

private:
    QDBusConnection m_bus;
    QString m_id;
    QString m_path;
    bool m_ownsName = false;
};

} // namespace tallyfox
