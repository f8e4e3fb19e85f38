#include "Tallyfox/Agent/StatusItem/StatusNotifierWatch.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <chrono>

namespace tallyfox {

namespace {

using namespace std::chrono_literals;

/// Some watchers take their name a moment before they answer calls.
constexpr int triesAfterFirst = 3;
constexpr auto betweenTries = 1s;

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

bool saysNotThereYet(const QDBusError& error)
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
    m_nextTry.setSingleShot(true);
    m_nextTry.setInterval(betweenTries);
    connect(&m_nextTry, &QTimer::timeout, this, &StatusNotifierWatch::registerItem);
    if (!m_bus.isConnected())
        return;
    connectSignals();
    askForOwner();
}

/// Without a sender's name in them: the library would look its owner up, and wait. The slots look who has sent.
void StatusNotifierWatch::connectSignals()
{
    m_bus.connect({}, QStringLiteral("/org/freedesktop/DBus"), busName(), QStringLiteral("NameOwnerChanged"),
                  {watcherName()}, {}, this, SLOT(ownerChanged(QDBusMessage)));
    for (const auto& signal :
         {QStringLiteral("StatusNotifierHostRegistered"), QStringLiteral("StatusNotifierHostUnregistered")})
        m_bus.connect({}, watcherPath(), watcherName(), signal, this, SLOT(hostsChanged(QDBusMessage)));
    connect(&m_disconnectWatcher, &BusDisconnectWatcher::disconnected, this, [this] { setOwner({}); });
}

void StatusNotifierWatch::askForOwner()
{
    QDBusMessage call = QDBusMessage::createMethodCall(busName(), QStringLiteral("/org/freedesktop/DBus"), busName(),
                                                       QStringLiteral("GetNameOwner"));
    call << watcherName();
    m_ownerQuestion = std::make_unique<QDBusPendingCallWatcher>(m_bus.asyncCall(call));
    connect(m_ownerQuestion.get(), &QDBusPendingCallWatcher::finished, this, &StatusNotifierWatch::takeOwner);
}

void StatusNotifierWatch::takeOwner()
{
    const QDBusPendingReply<QString> reply = *m_ownerQuestion;
    if (m_host == StatusNotifierHost::unknown && m_owner.isEmpty())
        setOwner(reply.isValid() ? reply.value() : QString{});
}

void StatusNotifierWatch::ownerChanged(const QDBusMessage& signal)
{
    const QList<QVariant> arguments = signal.arguments();
    if (signal.service() == busName() && arguments.size() == 3 && arguments.first().toString() == watcherName())
        setOwner(arguments.last().toString());
}

void StatusNotifierWatch::setOwner(const QString& owner)
{
    m_nextTry.stop();
    m_registration.reset();
    m_hostQuestion.reset();
    m_owner = owner;
    m_isRegistered = false;
    m_triesLeft = triesAfterFirst;
    setHost(owner.isEmpty() ? StatusNotifierHost::absent : StatusNotifierHost::unknown);
    if (!owner.isEmpty())
        registerItem();
}

/// To this owner and no other: whoever takes the name next is told by its own call. Under the connection's unique name,
/// which needs no second name on the bus and ends with the program; every watcher that was tried takes it.
void StatusNotifierWatch::registerItem()
{
    QDBusMessage call = QDBusMessage::createMethodCall(m_owner, watcherPath(), watcherName(),
                                                       QStringLiteral("RegisterStatusNotifierItem"));
    call << m_bus.baseService();
    m_registration = std::make_unique<QDBusPendingCallWatcher>(m_bus.asyncCall(call));
    connect(m_registration.get(), &QDBusPendingCallWatcher::finished, this, &StatusNotifierWatch::takeRegistration);
}

void StatusNotifierWatch::takeRegistration()
{
    if (!m_registration->isError()) {
        m_isRegistered = true;
        askForHost();
    } else if (saysNotThereYet(m_registration->error()) && m_triesLeft > 0) {
        --m_triesLeft;
        m_nextTry.start();
    } else {
        setHost(StatusNotifierHost::refusing);
    }
}

void StatusNotifierWatch::hostsChanged(const QDBusMessage& signal)
{
    if (!m_isRegistered || signal.service() != m_owner)
        return;
    // One question at a time, however many signals a watcher sends.
    if (m_hostQuestion && !m_hostQuestion->isFinished())
        m_isAnswerStale = true;
    else
        askForHost();
}

/// A watcher may run with no panel behind it, KDE's for one in any session that has a KDE program in it.
void StatusNotifierWatch::askForHost()
{
    if (!m_isRegistered) // the owner has changed since this was queued
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        m_owner, watcherPath(), QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << watcherName() << QStringLiteral("IsStatusNotifierHostRegistered");
    m_isAnswerStale = false;
    m_hostQuestion = std::make_unique<QDBusPendingCallWatcher>(m_bus.asyncCall(call));
    connect(m_hostQuestion.get(), &QDBusPendingCallWatcher::finished, this, &StatusNotifierWatch::takeHost);
}

void StatusNotifierWatch::takeHost()
{
    const QDBusPendingReply<QDBusVariant> reply = *m_hostQuestion;
    const QVariant isThere = reply.isValid() ? reply.value().variant() : QVariant{};
    // Only a plain "no" counts: the item is registered, after all.
    if (m_isAnswerStale) // later: the question that was just answered is still at work
        QMetaObject::invokeMethod(this, &StatusNotifierWatch::askForHost, Qt::QueuedConnection);
    const bool isAbsent = isThere.metaType() == QMetaType::fromType<bool>() && !isThere.toBool();
    setHost(isAbsent ? StatusNotifierHost::absent : StatusNotifierHost::present);
}

void StatusNotifierWatch::setHost(StatusNotifierHost host)
{
    if (m_host == host)
        return;
    m_host = host;
    Q_EMIT hostChanged();
}

} // namespace tallyfox
