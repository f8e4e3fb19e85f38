#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>

#include <optional>

namespace tallyfox {

/// Where the desktop portal is.
QString portalService();
QString portalPath();

/// A name that nobody else uses, as the portal wants for its objects.
QString newPortalToken();

/// What one method of the desktop portal is asked for: the portal answers with the handle of the request at once, and
/// with the outcome through the handle when the user or the desktop has decided.
class PortalRequest : public QObject {
    Q_OBJECT

public:
    /// Asks at once. `method` is "Interface.Method" below org.freedesktop.portal; `arguments` are those before the
    /// options. `context` must outlive the object: a handle that comes after its destruction is closed.
    PortalRequest(QObject& context, const QDBusConnection& bus, const QString& method, const QVariantList& arguments,
                  const QVariantMap& options = {});
    /// Closes the request, which withdraws it, or ends what it stands for.
    ~PortalRequest() override;

    /// The unique name of the portal that has answered; empty before.
    [[nodiscard]] QString portal() const
    {
        return m_portal;
    }

Q_SIGNALS:
    // Each at most once, from the event loop; the receiver may delete the object.
    void succeeded(const QVariantMap& results);
    void failed(); ///< refused, not understood, or, also after `succeeded`, without its portal

private Q_SLOTS:
    void respond(const QDBusMessage& response);

private:
    void listenTo(const QString& handle);
    void takeReply(const QDBusMessage& reply, const QString& handle);
    void fail();

    QDBusConnection m_bus;
    QString m_portal;
    QString m_handle;
    std::optional<QDBusMessage> m_response; ///< the last that has come before the reply
    bool m_isDecided = false; ///< the portal may say so again, which changes nothing
    bool m_hasFailed = false;
};

} // namespace tallyfox
