#include "Tallyfox/Agent/Bus/PortalRequest.h"

#include "Tallyfox/Agent/Bus/ServiceCall.h"

#include <QDBusObjectPath>
#include <QDBusPendingReply>
#include <QPointer>
#include <QUuid>

namespace tallyfox {

namespace {

const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

/// The object path that the request will have: known before the call, so that no response is missed.
QString expectedHandle(const QDBusConnection& bus, const QString& token)
{
    const QString peer = bus.baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    return portalPath() + QStringLiteral("/request/") + peer + QLatin1Char('/') + token;
}

/// The portal's unique name, or its well-known one where the bus library does not report it.
QString portalOr(const QString& uniqueName)
{
    return uniqueName.isEmpty() ? portalService() : uniqueName;
}

void closeRequest(const QDBusConnection& bus, const QString& portal, const QString& handle)
{
    bus.send(QDBusMessage::createMethodCall(portal, handle, requestInterface, QStringLiteral("Close")));
}

QDBusMessage portalCall(const QString& method)
{
    const qsizetype point = method.indexOf(QLatin1Char('.'));
    return QDBusMessage::createMethodCall(portalService(), portalPath(),
                                          QStringLiteral("org.freedesktop.portal.") + method.left(point),
                                          method.mid(point + 1));
}

} // namespace

QString portalService()
{
    return QStringLiteral("org.freedesktop.portal.Desktop");
}

QString portalPath()
{
    return QStringLiteral("/org/freedesktop/portal/desktop");
}

QString newPortalToken()
{
    return QStringLiteral("tallyfox") + QUuid::createUuid().toString(QUuid::Id128);
}

PortalRequest::PortalRequest(QObject& context, const QDBusConnection& bus, const QString& method,
                             const QVariantList& arguments, const QVariantMap& options)
    : m_bus(bus)
{
    const QString token = newPortalToken();
    listenTo(expectedHandle(bus, token));
    watchService(*this, bus, portalService(), [this] { fail(); });
    QVariantMap allOptions = options;
    allOptions[QStringLiteral("handle_token")] = token;
    QDBusMessage call = portalCall(method);
    call.setArguments(arguments + QVariantList{allOptions});
    const auto handle = [bus, self = QPointer{this}](const QDBusPendingCall& answered) {
        const QDBusPendingReply<QDBusObjectPath> reply = answered;
        if (self && reply.isError())
            self->fail();
        else if (self)
            self->handleReply(reply.reply(), reply.value().path());
        else if (!reply.isError())
            closeRequest(bus, portalOr(reply.reply().service()), reply.value().path());
    };
    callService(context, bus, call, handle);
}

PortalRequest::~PortalRequest()
{
    if (m_hasReply)
        closeRequest(m_bus, portalOr(m_portal), m_handle);
}

void PortalRequest::listenTo(const QString& handle)
{
    m_handle = handle;
    // From any sender at first: asking the bus who the portal is would block.
    m_bus.connect(QString{}, handle, requestInterface, QStringLiteral("Response"), this,
                  SLOT(handleResponse(QDBusMessage)));
}

void PortalRequest::handleReply(const QDBusMessage& reply, const QString& handle)
{
    if (handle != m_handle)
        listenTo(handle); // old portals choose the path themselves
    m_hasReply = true;
    findReplier(*this, m_bus, reply, portalService(), [this](const QString& portal) {
        if (portal.isEmpty())
            fail();
        m_portal = portal;
        if (m_response)
            handleResponse(*m_response);
    });
}

void PortalRequest::handleResponse(const QDBusMessage& response)
{
    if (m_portal.isEmpty()) {
        m_response = response; // before the reply, which says who the portal is
        return;
    }
    if (response.service() != m_portal || m_hasFailed || m_isDecided)
        return;
    m_isDecided = true;
    const QVariantList outcome = response.arguments();
    if (response.signature() == QLatin1StringView{"ua{sv}"})
        m_results = qdbus_cast<QVariantMap>(outcome.at(1));
    if (response.signature() != QLatin1StringView{"ua{sv}"} || outcome.at(0).toUInt() != 0) {
        fail();
        return;
    }
    QMetaObject::invokeMethod(this, "succeeded", Qt::QueuedConnection, Q_ARG(QVariantMap, m_results));
}

void PortalRequest::fail()
{
    if (m_hasFailed)
        return;
    m_hasFailed = true;
    QMetaObject::invokeMethod(this, "failed", Qt::QueuedConnection);
}

} // namespace tallyfox
