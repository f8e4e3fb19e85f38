#include "Tallyfox/Agent/StatusItem/StatusNotifierWatch.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingReply>

#include <algorithm>
#include <chrono>

namespace tallyfox {

namespace {

using namespace std::chrono_literals;

/// Some watchers own their name a moment before they answer calls.
constexpr int maxRetries = 3;
constexpr auto registrationRetryInterval = 1s;

QString busName()
{
    return QStringLiteral("org.freedesktop.DBus");
}

QString watcherName()
{
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

QString watcherPath()
{
    return QStringLiteral("/StatusNotifierWatcher");
}

bool isNotReadyError(const QDBusError& error)
{
    return error.type() == QDBusError::UnknownObject || error.type() == QDBusError::UnknownInterface
        || error.type() == QDBusError::UnknownMethod;
}

} // namespace

StatusNotifierWatch::StatusNotifierWatch(const QDBusConnection& bus, QObject* parent)
    : QObject{parent}
    , m_bus{bus}
    , m_disconnectWatcher{bus}
    , m_host{bus.isConnected() ? StatusNotifierHost::unknown : StatusNotifierHost::absent}
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(registrationRetryInterval);
    connect(&m_retry, &QTimer::timeout, this, &StatusNotifierWatch::registerItem);
    if (!m_bus.isConnected())
        return;
    connectSignals();
    requestOwner();
}

/// Without the name of a sender, whose owner the bus library would look up with a blocking call. The slots check the
/// sender instead.
void StatusNotifierWatch::connectSignals()
{
    m_bus.connect({}, QStringLiteral("/org/freedesktop/DBus"), busName(), QStringLiteral("NameOwnerChanged"),
                  {watcherName()}, {}, this, SLOT(handleOwnerChange(QDBusMessage)));
    for (const auto& signal :
         {QStringLiteral("StatusNotifierHostRegistered"), QStringLiteral("StatusNotifierHostUnregistered")})
        m_bus.connect({}, watcherPath(), watcherName(), signal, this, SLOT(handleHostsChange(QDBusMessage)));
    for (const auto& signal :
         {QStringLiteral("StatusNotifierItemRegistered"), QStringLiteral("StatusNotifierItemUnregistered")})
        m_bus.connect({}, watcherPath(), watcherName(), signal, this, SLOT(handleItemsChange(QDBusMessage)));
    connect(&m_disconnectWatcher, &BusDisconnectWatcher::disconnected, this, [this] { setOwner({}); });
}

void StatusNotifierWatch::requestOwner()
{
    QDBusMessage call = QDBusMessage::createMethodCall(busName(), QStringLiteral("/org/freedesktop/DBus"), busName(),
                                                       QStringLiteral("GetNameOwner"));
    call << watcherName();
    m_ownerCall = std::make_unique<QDBusPendingCallWatcher>(m_bus.asyncCall(call));
    connect(m_ownerCall.get(), &QDBusPendingCallWatcher::finished, this, &StatusNotifierWatch::handleOwnerReply);
}

void StatusNotifierWatch::handleOwnerReply()
{
    const QDBusPendingReply<QString> reply = *m_ownerCall;
    if (m_host == StatusNotifierHost::unknown && m_owner.isEmpty())
        setOwner(reply.isValid() ? reply.value() : QString{});
}

void StatusNotifierWatch::handleOwnerChange(const QDBusMessage& signal)
{
    const QList<QVariant> arguments = signal.arguments();
    if (signal.service() == busName() && arguments.size() == 3 && arguments.first().toString() == watcherName())
        setOwner(arguments.last().toString());
}

void StatusNotifierWatch::setOwner(const QString& owner)
{
    m_retry.stop();
    m_registrationCall.reset();
    m_hostCall.reset();
    m_owner = owner;
    m_isRegistered = false;
    m_retriesLeft = maxRetries;
    setHost(owner.isEmpty() ? StatusNotifierHost::absent : StatusNotifierHost::unknown);
    if (!owner.isEmpty())
        registerItem();
}

/// With this owner only: the next owner of the name gets a call of its own. The item is registered under the
/// connection's unique name, which every watcher that was tried accepts: it needs no second name on the bus, and ends
/// with the program.
void StatusNotifierWatch::registerItem()
{
    QDBusMessage call = QDBusMessage::createMethodCall(m_owner, watcherPath(), watcherName(),
                                                       QStringLiteral("RegisterStatusNotifierItem"));
    call << m_bus.baseService();
    m_registrationCall = std::make_unique<QDBusPendingCallWatcher>(m_bus.asyncCall(call));
    connect(m_registrationCall.get(), &QDBusPendingCallWatcher::finished, this,
            &StatusNotifierWatch::handleRegistrationReply);
}

void StatusNotifierWatch::handleRegistrationReply()
{
    if (!m_registrationCall->isError()) {
        m_isRegistered = true;
        requestHost();
    } else if (isNotReadyError(m_registrationCall->error()) && m_retriesLeft > 0) {
        --m_retriesLeft;
        m_retry.start();
    } else {
        setHost(StatusNotifierHost::refusing);
    }
}

void StatusNotifierWatch::handleHostsChange(const QDBusMessage& signal)
{
    if (!m_isRegistered || signal.service() != m_owner)
        return;
    // One call at a time, however many signals a watcher sends.
    if (m_hostCall && !m_hostCall->isFinished())
        m_isReplyStale = true;
    else
        requestHost();
}

void StatusNotifierWatch::handleItemsChange(const QDBusMessage& signal)
{
    if (isOurs(signal.arguments().value(0).toString()))
        handleHostsChange(signal);
}

/// Watchers append the item's path to its name, each in its own way.
bool StatusNotifierWatch::isOurs(const QString& item) const
{
    const QString name = m_bus.baseService();
    const qsizetype place = item.indexOf(name);
    if (place < 0)
        return false;
    const QString rest = item.mid(place + name.size());
    return rest.isEmpty() || !rest.front().isDigit();
}

/// A watcher may run without a panel: KDE's does in any session with a KDE program in it. And it may drop an item that
/// it has accepted: GNOME's extension does when it misses something in it.
void StatusNotifierWatch::requestHost()
{
    if (!m_isRegistered) // the owner has changed since this was queued
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        m_owner, watcherPath(), QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("GetAll"));
    call << watcherName();
    m_isReplyStale = false;
    m_hostCall = std::make_unique<QDBusPendingCallWatcher>(m_bus.asyncCall(call));
    connect(m_hostCall.get(), &QDBusPendingCallWatcher::finished, this, &StatusNotifierWatch::handleHostReply);
}

void StatusNotifierWatch::handleHostReply()
{
    const QDBusPendingReply<QVariantMap> reply = *m_hostCall;
    const StatusNotifierHost host = findHost(reply.isValid() ? reply.value() : QVariantMap{});
    if (m_isReplyStale) // queued: the watcher of the finished call is still emitting
        QMetaObject::invokeMethod(this, &StatusNotifierWatch::requestHost, Qt::QueuedConnection);
    setHost(host);
}

/// Only a plain "no" counts, or a list without the item: it has been registered.
StatusNotifierHost StatusNotifierWatch::findHost(const QVariantMap& properties) const
{
    const QVariant isThere = properties.value(QStringLiteral("IsStatusNotifierHostRegistered"));
    if (isThere.metaType() == QMetaType::fromType<bool>() && !isThere.toBool())
        return StatusNotifierHost::absent;
    const QVariant items = properties.value(QStringLiteral("RegisteredStatusNotifierItems"));
    if (items.metaType() != QMetaType::fromType<QStringList>())
        return StatusNotifierHost::present;
    const QStringList list = items.toStringList();
    const bool isListed = std::ranges::any_of(list, [this](const QString& item) { return isOurs(item); });
    return isListed ? StatusNotifierHost::present : StatusNotifierHost::refusing;
}

void StatusNotifierWatch::setHost(StatusNotifierHost host)
{
    if (m_host == host)
        return;
    m_host = host;
    Q_EMIT hostChanged();
}

} // namespace tallyfox
