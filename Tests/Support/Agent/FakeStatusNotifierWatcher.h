#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QStringList>

namespace tallyfox::test {

/// Keeps the list of status notifier items on a bus, as panels do. A peer of its own, which dies with the object.
class FakeStatusNotifierWatcher : public QDBusVirtualObject {
public:
    enum class Manner {
        takesItems,
        refuses,
        isSilent, ///< never answers
        answersNonsense, ///< in types that nobody expects
        knowsNoCalls, ///< has its name, and nothing behind it yet
    };

    explicit FakeStatusNotifierWatcher(const QDBusConnection& bus, Manner manner = Manner::takesItems);
    ~FakeStatusNotifierWatcher() override;

    void setManner(Manner manner);
    /// Whether a panel shows what is registered; announced when it comes or goes.
    void setHost(bool isThere);

    [[nodiscard]] QStringList registered() const; ///< by every call, in order
    [[nodiscard]] int registrationCalls() const; ///< with those that were not taken
    [[nodiscard]] int hostQuestions() const; ///< how often it was asked whether there is a panel

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    [[nodiscard]] QString introspect(const QString& path) const override;

private:
    void answer(const QDBusMessage& message, const QVariant& value);
    void answerRegistration(const QDBusMessage& message);

    QDBusConnection m_bus;
    Manner m_manner;
    bool m_hasHost = true;
    int m_registrationCalls = 0;
    int m_hostQuestions = 0;
    QStringList m_registered;
};

} // namespace tallyfox::test
