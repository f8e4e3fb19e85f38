#pragma once

#include "Support/Agent/FakeService.h"

#include <QDBusMetaType>

#include <functional>
#include <map>

namespace tallyfox::test {

/// A key sequence, "(ai)", as KDE's service for global shortcuts sends it: four keys.
struct KdeKeySequence {
    QList<int> keys;
};

inline QDBusArgument& operator<<(QDBusArgument& argument, const KdeKeySequence& sequence)
{
    argument.beginStructure();
    argument << sequence.keys;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, KdeKeySequence& sequence)
{
    argument.beginStructure();
    argument >> sequence.keys;
    argument.endStructure();
    return argument;
}

/// KDE's service for global shortcuts. It answers calls with the signatures of the real one, and no others.
class FakeKdeService {
public:
    using Keys = QList<KdeKeySequence>;

    static constexpr const char* name = "org.kde.kglobalaccel";
    static constexpr int metaAltB = 0x18000042;

    /// `assigned` are the keys that it says it has for the shortcut.
    FakeKdeService(const QDBusConnection& bus, const Keys& assigned)
        : m_assigned(assigned)
        , m_service(bus, QLatin1StringView{name}, [this](const QDBusMessage& call) { return answer(call); })
    {
        registerTypes();
    }

    /// Lets this process send keys.
    static void registerTypes()
    {
        qDBusRegisterMetaType<KdeKeySequence>();
        qDBusRegisterMetaType<Keys>();
    }

    static Keys usualKeys()
    {
        return {{{metaAltB, 0, 0, 0}}};
    }

    [[nodiscard]] QList<QDBusMessage> callsOf(const char* method) const
    {
        return m_service.callsOf(method);
    }
    /// The methods called so far.
    [[nodiscard]] QStringList methods() const
    {
        QStringList result;
        for (const QDBusMessage& call : m_service.messages())
            result += call.member();
        return result;
    }

    /// The keys of an action have been pressed. From any peer on the bus.
    static void press(const QDBusConnection& bus, const QString& component = QStringLiteral("tallyfox"),
                      const QString& action = QStringLiteral("toggle-popover"))
    {
        bus.send(keysSignal("globalShortcutPressed") << component << action << qlonglong{1234});
    }
    static void release(const QDBusConnection& bus)
    {
        bus.send(keysSignal("globalShortcutReleased")
                 << QStringLiteral("tallyfox") << QStringLiteral("toggle-popover") << qlonglong{1234});
    }
    static QDBusMessage keysSignal(const char* member)
    {
        return QDBusMessage::createSignal(QStringLiteral("/component/tallyfox"),
                                          QStringLiteral("org.kde.kglobalaccel.Component"), QLatin1StringView{member});
    }

    /// The user has given other keys to an action. From any peer on the bus.
    static void change(const QDBusConnection& bus, const Keys& keys,
                       const QString& component = QStringLiteral("tallyfox"),
                       const QString& action = QStringLiteral("toggle-popover"))
    {
        const QStringList id{component, action, QStringLiteral("Any"), QStringLiteral("Thing")};
        bus.send(changeSignal() << id << QVariant::fromValue(keys));
    }
    static QDBusMessage changeSignal()
    {
        return QDBusMessage::createSignal(QStringLiteral("/kglobalaccel"), QStringLiteral("org.kde.KGlobalAccel"),
                                          QStringLiteral("yourShortcutsChanged"));
    }

    std::function<void()> aboutToRegister = [] {};

private:
    std::optional<QDBusMessage> answer(const QDBusMessage& call)
    {
        const std::map<QString, QString> signatures{{QStringLiteral("doRegister"), QStringLiteral("as")},
                                                    {QStringLiteral("setShortcutKeys"), QStringLiteral("asa(ai)u")},
                                                    {QStringLiteral("setInactive"), QStringLiteral("as")}};
        const auto known = signatures.find(call.member());
        if (call.path() != QStringLiteral("/kglobalaccel") || call.interface() != QStringLiteral("org.kde.KGlobalAccel")
            || known == signatures.end() || call.signature() != known->second)
            return call.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("no such method"));
        if (call.member() == QStringLiteral("doRegister"))
            aboutToRegister();
        return call.member() == QStringLiteral("setShortcutKeys") ? call.createReply(QVariant::fromValue(m_assigned))
                                                                  : call.createReply();
    }

    Keys m_assigned;
    FakeService m_service;
};

} // namespace tallyfox::test
