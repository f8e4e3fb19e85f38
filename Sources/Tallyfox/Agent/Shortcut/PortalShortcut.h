#pragma once

#include "Tallyfox/Agent/Bus/PortalRequest.h"
#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"

namespace tallyfox {

/// The keys as the desktop portal grants them; the user may have chosen others there. A portal that refuses is not
/// asked again; one that ends after its grant is asked once more when it is there again.
class PortalShortcut : public GlobalShortcut {
    Q_OBJECT

public:
    explicit PortalShortcut(const QDBusConnection& bus, QObject* parent = nullptr);
    /// Closes the session, which ends the grant. What is asked at that moment ends with the program's connection.
    ~PortalShortcut() override;

Q_SIGNALS:
    void boundChanged(bool isBound); ///< whether the portal has granted the shortcut; at first it has not

private Q_SLOTS:
    void takeActivation(const QDBusMessage& activation);
    void takeEnd(const QDBusMessage& end);

private:
    void createSession();
    void bind(const QVariantMap& results);
    void takeGrant(const QVariantMap& results);
    void giveUp();
    void followOwner(const QString& before, const QString& after);
    void setBound(bool isBound);
    void closeSession();

    QDBusConnection m_bus;
    QObject m_context; ///< of pending calls
    std::unique_ptr<PortalRequest> m_request; ///< the one under way, or the last
    QString m_portal; ///< the unique name of the one with the session
    QString m_session; ///< its path; empty without one
    bool m_isBound = false;
    bool m_isMissed = false; ///< the portal that had granted the shortcut is gone
};

} // namespace tallyfox
