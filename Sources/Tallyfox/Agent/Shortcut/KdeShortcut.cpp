#include "Tallyfox/Agent/Shortcut/KdeShortcut.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>

#include <algorithm>
#include <chrono>
#include <utility>

namespace tallyfox {

namespace {

const QString serviceName = QStringLiteral("org.kde.kglobalaccel");
const QString servicePath = QStringLiteral("/kglobalaccel");
const QString serviceInterface = QStringLiteral("org.kde.KGlobalAccel");

const QString componentName = QStringLiteral("tallyfox");
const QString componentPath = QStringLiteral("/component/tallyfox");
const QString componentInterface = QStringLiteral("org.kde.kglobalaccel.Component");
const QString keysPressed = QStringLiteral("globalShortcutPressed");
const QString keysReleased = QStringLiteral("globalShortcutReleased");
const QString actionName = QStringLiteral("toggle-popover");

constexpr int shortcutKey = (Qt::META | Qt::ALT | Qt::Key_B).toCombined();
constexpr int keysOfSequence = 4;

// Flags of "setShortcutKeys". Without "no autoloading", 4, keys that the service has stored win over the given ones.
constexpr unsigned setPresent = 2;
constexpr unsigned isDefault = 8;

/// The service may have to be started first, at login together with all others.
constexpr std::chrono::seconds registrationTimeout{25};

/// A key sequence as the service wants it: "(ai)", with four keys of which the unused are 0.
struct KeySequence {
    QList<int> keys;
};

QDBusArgument& operator<<(QDBusArgument& argument, const KeySequence& sequence)
{
    argument.beginStructure();
    argument << sequence.keys;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, KeySequence& sequence)
{
    argument.beginStructure();
    argument >> sequence.keys;
    argument.endStructure();
    return argument;
}

/// The names that identify the action, and those that System Settings shows.
QStringList actionId()
{
    return {componentName, actionName, QStringLiteral("Tallyfox"), GlobalShortcut::tr("Open or close Tallyfox")};
}

QDBusMessage serviceCall(const QString& method, const QVariantList& arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(serviceName, servicePath, serviceInterface, method);
    call.setArguments(arguments);
    return call;
}

QDBusMessage keysCall(unsigned flags)
{
    qDBusRegisterMetaType<KeySequence>();
    qDBusRegisterMetaType<QList<KeySequence>>();
    QList<int> keys(keysOfSequence);
    keys.front() = shortcutKey;
    return serviceCall(QStringLiteral("setShortcutKeys"),
                       {actionId(), QVariant::fromValue(QList<KeySequence>{{keys}}), flags});
}

/// The service has nothing but an empty sequence where the user has removed the keys, or another program had them
/// first.
ShortcutState stateFor(const QVariant& sequences)
{
    const auto assigned = qdbus_cast<QList<KeySequence>>(sequences.value<QDBusArgument>());
    const bool hasKeys = std::any_of(assigned.begin(), assigned.end(), [](const KeySequence& sequence) {
        return !sequence.keys.isEmpty() && sequence.keys.front() != 0;
    });
    return hasKeys ? ShortcutState::inForce : ShortcutState::notInForce;
}

} // namespace

KdeShortcut::KdeShortcut(const QDBusConnection& bus, QObject* parent)
    : GlobalShortcut(parent)
    , m_bus(bus)
    , m_disconnectWatcher(bus)
{
    connectSignals();
    registerKeys();
}

KdeShortcut::~KdeShortcut()
{
    QDBusMessage call = serviceCall(QStringLiteral("setInactive"), {actionId()});
    call.setAutoStartService(false);
    m_bus.send(call);
}

void KdeShortcut::connectSignals()
{
    const auto* watcher = new QDBusServiceWatcher(serviceName, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString& before, const QString& after) { handleOwnerChange(before, after); });
    connect(&m_disconnectWatcher, &BusDisconnectWatcher::disconnected, this, &KdeShortcut::handleLoss);
    // From any sender: asking the bus who the service is would block.
    for (const QString& signal : {keysPressed, keysReleased})
        m_bus.connect(QString{}, componentPath, componentInterface, signal, this, SLOT(handleKeys(QDBusMessage)));
    m_bus.connect(QString{}, servicePath, serviceInterface, QStringLiteral("yourShortcutsChanged"), this,
                  SLOT(handleChange(QDBusMessage)));
}

void KdeShortcut::registerKeys()
{
    m_service.clear();
    m_isHeld = false;
    setState(ShortcutState::notInForce);
    setServed(true);
    m_registration = std::make_unique<QObject>();
    m_bus.send(serviceCall(QStringLiteral("doRegister"), {actionId()}));
    m_bus.send(keysCall(isDefault));
    callService(
        *m_registration, m_bus, keysCall(setPresent),
        [this](const QDBusPendingCall& answered) { handleReply(answered.reply()); }, registrationTimeout);
}

void KdeShortcut::handleReply(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1StringView{"a(ai)"}) {
        endRegistration();
        handleLoss();
        return;
    }
    findReplier(*m_registration, m_bus, reply, serviceName, [this, reply](const QString& service) {
        endRegistration();
        m_service = service;
        if (service.isEmpty())
            handleLoss();
        else
            setState(stateFor(reply.arguments().front()));
    });
}

void KdeShortcut::endRegistration()
{
    m_registration.release()->deleteLater(); // it is the context of the call that is being handled
}

void KdeShortcut::handleKeys(const QDBusMessage& signal)
{
    if (m_service.isEmpty() || signal.service() != m_service || signal.signature() != QLatin1StringView{"ssx"})
        return;
    if (signal.arguments().at(0).toString() != componentName || signal.arguments().at(1).toString() != actionName)
        return;
    const bool wasHeld = std::exchange(m_isHeld, signal.member() == keysPressed);
    if (m_isHeld && !wasHeld)
        Q_EMIT activated();
}

/// In System Settings, by the user.
void KdeShortcut::handleChange(const QDBusMessage& change)
{
    if (m_service.isEmpty() || change.service() != m_service || change.signature() != QLatin1StringView{"asa(ai)"})
        return;
    const QStringList changed = change.arguments().at(0).toStringList();
    if (changed.value(0) == componentName && changed.value(1) == actionName)
        setState(stateFor(change.arguments().at(1)));
}

void KdeShortcut::handleOwnerChange(const QString& before, const QString& after)
{
    if (after.isEmpty())
        handleLoss();
    else if (after != m_service && (!m_registration || !before.isEmpty())) // else the pending call has started it
        registerKeys();
}

void KdeShortcut::handleLoss()
{
    m_registration.reset();
    m_service.clear();
    setServed(false); // first, so that others take over at once
    setState(ShortcutState::notInForce);
}

void KdeShortcut::setServed(bool isServed)
{
    if (m_isServed == isServed)
        return;
    m_isServed = isServed;
    Q_EMIT isServedChanged(isServed);
}

} // namespace tallyfox
