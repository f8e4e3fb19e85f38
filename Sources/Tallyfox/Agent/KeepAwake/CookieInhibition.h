#pragma once

#include "Tallyfox/Agent/KeepAwake/InhibitionRequest.h"

#include <QDBusMessage>

#include <optional>

namespace tallyfox {

/// A service that hands out a number for an inhibition, and takes it back to end it.
struct CookieService {
    QString name;
    QString path;
    QString interface;
    QString endMethod;
    QVariantList arguments; ///< of its method "Inhibit"
};

/// org.freedesktop.PowerManagement: KDE, Xfce, MATE and others.
CookieService powerManagement(const QString& reason);
/// org.gnome.SessionManager, asked not to suspend.
CookieService sessionManager(const QString& reason);

class CookieInhibition : public InhibitionRequest {
    Q_OBJECT

public:
    CookieInhibition(const InhibitionContext& context, const CookieService& service);
    ~CookieInhibition() override;

private:
    QDBusConnection m_bus;
    QDBusMessage m_end; ///< without the cookie
    std::optional<unsigned> m_cookie;
};

} // namespace tallyfox
