#pragma once

#include "Tallyfox/Agent/Bus/ServiceCall.h"
#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <memory>

namespace tallyfox {

/// The shortcut as KDE's service for global shortcuts keeps it: on X11 and Wayland, without asking, and on the keys
/// that the user has chosen in System Settings, perhaps on none. Registered again whenever the service restarts.
class KdeShortcut : public GlobalShortcut {
    Q_OBJECT

public:
    /// Starts the service if it is not running.
    explicit KdeShortcut(const QDBusConnection& bus, QObject* parent = nullptr);
    /// Leaves the keys to the service as those of a program that is not running.
    ~KdeShortcut() override;

    /// Whether the service decides about the keys: nothing else must grab them then. Assumed until it does not answer.
    [[nodiscard]] bool isServed() const
    {
        return m_isServed;
    }

Q_SIGNALS:
    /// When the service has come, it is emitted before the keys are registered.
    void isServedChanged(bool isServed);

private Q_SLOTS:
    void handleKeys(const QDBusMessage& signal);
    void handleChange(const QDBusMessage& change);

private:
    void connectSignals();
    void registerKeys();
    void handleReply(const QDBusMessage& reply);
    void endRegistration();
    void handleOwnerChange(const QString& before, const QString& after);
    void handleLoss();
    void setServed(bool isServed);

    QDBusConnection m_bus;
    BusDisconnectWatcher m_disconnectWatcher;
    std::unique_ptr<QObject> m_registration; ///< context of the pending call; null without one
    QString m_service; ///< unique name of the service that has the keys; empty without one
    bool m_isServed = true;
    bool m_isHeld = false; ///< the keys are: the service repeats that they are pressed
};

} // namespace tallyfox
