#pragma once

#include "Tallyfox/Agent/Bus/PortalRequest.h"
#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"

namespace tallyfox {

/// The shortcut as the desktop portal binds it, perhaps to other keys that the user has chosen there. Some portals show
/// a window when they bind, so nothing is bound before `request`; a portal that refuses is not asked again by itself.
/// One that ends after its grant is asked once more when it has restarted.
class PortalShortcut : public GlobalShortcut {
    Q_OBJECT

public:
    /// Registers the application with the portal at the first request. Nothing else may call the portal on that
    /// connection before, because it would be too late then.
    explicit PortalShortcut(const QDBusConnection& bus, QObject* parent = nullptr);
    /// Closes the session, which ends the grant. A session that is still being created ends with the bus connection.
    ~PortalShortcut() override;

    /// Whether the portal could be asked: starts it if need be, and shows nothing.
    void check() override;
    /// Does nothing while a request is pending or granted.
    void request() override;

Q_SIGNALS:
    /// The user has granted the shortcut, or declined. Not emitted when the portal fails.
    void consentChanged(bool hasConsent);

private Q_SLOTS:
    void handleActivation(const QDBusMessage& activation);
    void handleSessionClosed(const QDBusMessage& end);

private:
    void bind(const QVariantMap& results);
    void handleGrant(const QVariantMap& results);
    void handleRefusal();
    void decline();
    void endSession();
    void handleOwnerChange(const QString& before, const QString& after);
    void closeSession();

    QDBusConnection m_bus;
    QObject m_context; ///< of pending calls
    std::unique_ptr<PortalRequest> m_request; ///< the pending one; null without one
    QString m_portal; ///< unique name of the portal with the session
    QString m_session; ///< its path; empty without one
    bool m_wasLost = false; ///< the portal that had granted the shortcut is gone
};

} // namespace tallyfox
