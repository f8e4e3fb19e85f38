#pragma once

#include "Tallyfox/Agent/Bus/ServiceCall.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

class QDBusMessage;

namespace tallyfox {

/// Whether a panel shows our status notifier item.
enum class StatusNotifierHost {
    unknown, ///< not known yet
    absent, ///< no panel; one may still start
    refusing, ///< the watcher refuses or has dropped the item, or never gets ready for calls
    present, ///< the item is registered, and there is a panel
};

/// Registers the item with the watcher on this bus, which keeps the panels' list of items: once with each watcher that
/// appears. Never blocks.
class StatusNotifierWatch : public QObject {
    Q_OBJECT

public:
    explicit StatusNotifierWatch(const QDBusConnection& bus, QObject* parent = nullptr);

    [[nodiscard]] StatusNotifierHost host() const
    {
        return m_host;
    }
    /// The unique name of the watcher; empty without one.
    [[nodiscard]] const QString& watcher() const
    {
        return m_owner;
    }

Q_SIGNALS:
    void hostChanged();

private Q_SLOTS: // called by the bus
    void handleOwnerChange(const QDBusMessage& signal);
    void handleHostsChange(const QDBusMessage& signal);
    void handleItemsChange(const QDBusMessage& signal);

private:
    void connectSignals();
    void requestOwner();
    void handleOwnerReply();
    void setOwner(const QString& owner);
    void registerItem();
    void handleRegistrationReply();
    void requestHost();
    void handleHostReply();
    [[nodiscard]] bool isOurs(const QString& item) const;
    [[nodiscard]] StatusNotifierHost findHost(const QVariantMap& properties) const;
    void setHost(StatusNotifierHost host);

    QDBusConnection m_bus;
    BusDisconnectWatcher m_disconnectWatcher;
    QString m_owner;
    StatusNotifierHost m_host = StatusNotifierHost::unknown;
    bool m_isRegistered = false;
    bool m_isReplyStale = false; ///< hosts have changed since the last call
    int m_retriesLeft = 0;
    QTimer m_retry;
    std::unique_ptr<QDBusPendingCallWatcher> m_ownerCall;
    std::unique_ptr<QDBusPendingCallWatcher> m_registrationCall;
    std::unique_ptr<QDBusPendingCallWatcher> m_hostCall;
};

} // namespace tallyfox
