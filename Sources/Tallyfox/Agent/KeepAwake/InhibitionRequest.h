#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <memory>

namespace tallyfox {

/// A request to one service to keep the computer awake, in force until the object is destroyed. A grant that comes
/// after that is given back at once.
class InhibitionRequest : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    // Each at most once, from the event loop; the receiver may delete the object.
    void granted();
    void failed(); ///< refused, not understood, or, after `granted`, lost

protected:
    void grant();
    void fail();

private:
    bool m_hasFailed = false;
};

/// Asks one service on `bus`. `context` owns the pending calls and must outlive the request; `reason` is what the
/// desktop may show the user.
using InhibitionService = std::unique_ptr<InhibitionRequest>(QObject& context, const QDBusConnection& bus,
                                                             const QString& reason);

/// org.freedesktop.PowerManagement: KDE, Xfce, MATE and others.
InhibitionService requestPowerManagement;
/// org.gnome.SessionManager, asked not to suspend.
InhibitionService requestSessionManager;
/// The desktop portal, asked not to suspend.
InhibitionService requestPortal;
/// The login manager on the system bus, asked not to consider the session idle. It is not asked to block sleep: that
/// would hold off the sleep which the user asks for.
InhibitionService requestLoginManager;

} // namespace tallyfox
