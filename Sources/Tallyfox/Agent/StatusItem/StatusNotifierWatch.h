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

/// Where panels that show status notifier items stand with ours.
enum class StatusNotifierHost {
    unknown, ///< the question is on its way
    absent, ///< there is none; a panel may still come
    refusing, ///< there is something in its place that does not take the item, or never answers
    present, ///< the item is registered with a panel
};

/// Registers the item with whatever keeps the list of items on this bus: once with each that appears, for as long as
/// the object lives. Everything is asynchronous.
class StatusNotifierWatch : public QObject {
    Q_OBJECT

public:
    explicit StatusNotifierWatch(const QDBusConnection& bus, QObject* parent = nullptr);

    [[nodiscard]] StatusNotifierHost host() const
    {
        return m_host;
    }

Q_SIGNALS:
    void hostChanged();

private Q_SLOTS: // called by the bus
    void ownerChanged(const QDBusMessage& signal);
    void hostsChanged(const QDBusMessage& signal);

private:
    void connectSignals();
    void askForOwner();
    void takeOwner();
    void setOwner(const QString& owner);
    void registerItem();
    void takeRegistration();
    void askForHost();
    void takeHost();
    void setHost(StatusNotifierHost host);

    QDBusConnection m_bus;
    BusDisconnectWatcher m_disconnectWatcher;
    QString m_owner; ///< unique name of the watcher, empty without one
    StatusNotifierHost m_host = StatusNotifierHost::unknown;
    bool m_isRegistered = false;
    bool m_isAnswerStale = false; ///< hosts have changed since they were asked for
    int m_triesLeft = 0;
    QTimer m_nextTry;
    std::unique_ptr<QDBusPendingCallWatcher> m_ownerQuestion;
    std::unique_ptr<QDBusPendingCallWatcher> m_registration;
    std::unique_ptr<QDBusPendingCallWatcher> m_hostQuestion;
};

} // namespace tallyfox
