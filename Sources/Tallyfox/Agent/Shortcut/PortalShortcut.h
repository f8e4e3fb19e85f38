#pragma once

#include "Tallyfox/Agent/Bus/PortalRequest.h"
#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"

namespace tallyfox {

/// The shortcut as the desktop portal binds it, perhaps to other keys that the user has chosen there. A portal that
/// refuses is not asked again; one that ends after its grant is asked once more when it has restarted.
class PortalShortcut : public GlobalShortcut {
    Q_OBJECT

public:
    explicit PortalShortcut(const QDBusConnection& bus, QObject* parent = nullptr);
    /// Closes the session, which ends the grant. A session that is still being created ends with the bus connection.
    ~PortalShortcut() override;

Q_SIGNALS:
    void boundChanged(bool isBound); ///< whether the portal has granted the shortcut; at first it has not

private Q_SLOTS:
    void handleActivation(const QDBusMessage& activation);
    void handleSessionClosed(const QDBusMessage& end);

private:
    void createSession();
    void bind(const QVariantMap& results);
    void handleGrant(const QVariantMap& results);
    void endSession();
    void handleOwnerChange(const QString& before, const QString& after);
    void setBound(bool isBound);
    void closeSession();

    QDBusConnection m_bus;
    QObject m_context; ///< of pending calls
    std::unique_ptr<PortalRequest> m_request; ///< the pending one, or the last
    QString m_portal; ///< unique name of the portal with the session
    QString m_session; ///< its path; empty without one
    bool m_isBound = false;
    bool m_wasLost = false; ///< the portal that had granted the shortcut is gone
};

} // namespace tallyfox
