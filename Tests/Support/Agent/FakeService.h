#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>

#include <functional>
#include <optional>

namespace tallyfox::test {

/// A service on a bus that replies what the test wants, and records the calls.
class FakeService : public QDBusVirtualObject {
public:
    /// The reply; nothing for none.
    using Answer = std::function<std::optional<QDBusMessage>(const QDBusMessage& call)>;

    /// Takes `name` on `bus`, which must be a connection of its own, for everything below "/".
    FakeService(const QDBusConnection& bus, const QString& name, Answer answer)
        : m_bus(bus)
        , m_name(name)
        , m_answer(std::move(answer))
    {
        m_bus.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
        m_bus.registerService(name);
    }
    ~FakeService() override
    {
        m_bus.unregisterObject(QStringLiteral("/"));
        m_bus.unregisterService(m_name);
    }

    /// The calls so far, as "Method(argument, …)" with the numbers and strings among the arguments.
    [[nodiscard]] const QStringList& calls() const
    {
        return m_calls;
    }
    [[nodiscard]] const QList<QDBusMessage>& messages() const
    {
        return m_messages;
    }
    /// The calls of one method so far.
    [[nodiscard]] QList<QDBusMessage> callsOf(const char* method) const
    {
        QList<QDBusMessage> found;
        for (const QDBusMessage& message : m_messages) {
            if (message.member() == QLatin1StringView{method})
                found += message;
        }
        return found;
    }
    [[nodiscard]] QDBusConnection& bus()
    {
        return m_bus;
    }

    QString introspect(const QString&) const override
    {
        return {};
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        QStringList arguments;
        for (const QVariant& argument : message.arguments()) {
            if (argument.canConvert<QString>() && argument.userType() != qMetaTypeId<QDBusArgument>())
                arguments += argument.toString();
        }
        m_calls += message.member() + QLatin1Char('(') + arguments.join(QStringLiteral(", ")) + QLatin1Char(')');
        m_messages += message;
        if (const auto answer = m_answer(message))
            connection.send(*answer);
        return true;
    }

private:
    QDBusConnection m_bus;
    QString m_name;
    Answer m_answer;
    QStringList m_calls;
    QList<QDBusMessage> m_messages;
};

/// Replies to every call with these values.
inline FakeService::Answer answering(const QVariantList& values)
{
    return [values](const QDBusMessage& call) { return call.createReply(values); };
}

inline FakeService::Answer refusing()
{
    return
        [](const QDBusMessage& call) { return call.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no")); };
}

inline FakeService::Answer silent()
{
    return [](const QDBusMessage&) { return std::nullopt; };
}

} // namespace tallyfox::test
