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

/// A unique name for an object of the portal.
QString newPortalToken();

/// A call of a method of the desktop portal: the portal replies with the handle of a request object at once, and that
/// object signals the response when the user or the desktop has decided.
class PortalRequest : public QObject {
    Q_OBJECT

public:
    /// `method` is "Interface.Method" below org.freedesktop.portal; `arguments` are those before the
    /// options. `context` must outlive the object: a handle that is received after its destruction is closed.
    PortalRequest(QObject& context, const QDBusConnection& bus, const QString& method, const QVariantList& arguments,
                  const QVariantMap& options = {});
    /// Closes the request, which withdraws it, or ends what was granted.
    ~PortalRequest() override;

    /// The unique name of the portal; empty before its reply.
    [[nodiscard]] QString portal() const
    {
        return m_portal;
    }

    /// What the portal has responded, also when it was a refusal; empty before.
    [[nodiscard]] const QVariantMap& results() const
    {
        return m_results;
    }

    /// Whether the portal has responded: a request that has failed since was refused.
    [[nodiscard]] bool isDecided() const
    {
        return m_isDecided;
    }

Q_SIGNALS:
    // Each at most once, from the event loop; the receiver may delete the object.
    void succeeded(const QVariantMap& results);
    void failed(); ///< refused or not understood; or, also after `succeeded`, the portal has ended

private Q_SLOTS:
    void handleResponse(const QDBusMessage& response);

private:
    void listenTo(const QString& handle);
    void handleReply(const QDBusMessage& reply, const QString& handle);
    void fail();

    QDBusConnection m_bus;
    QString m_portal;
    QVariantMap m_results;
    bool m_hasReply = false;
    QString m_handle;
    std::optional<QDBusMessage> m_response; ///< the last one received before the reply
    bool m_isDecided = false; ///< later responses are ignored
    bool m_hasFailed = false;
};

} // namespace tallyfox
