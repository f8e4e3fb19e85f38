#pragma once

#include "Support/Agent/FakeService.h"

namespace tallyfox::test {

/// The list of status notifier items on a bus, as panels keep it. `bus` must be a connection of its own, which is
/// closed with the object.
class FakeStatusNotifierWatcher {
public:
    enum class Manner {
        takesItems,
        refuses,
        isSilent, ///< never replies
        answersNonsense, ///< of unexpected types
        knowsNoCalls, ///< owns its name, but has no object yet
    };

    explicit FakeStatusNotifierWatcher(const QDBusConnection& bus, Manner manner = Manner::takesItems);
    ~FakeStatusNotifierWatcher();
    FakeStatusNotifierWatcher(const FakeStatusNotifierWatcher&) = delete;
    FakeStatusNotifierWatcher& operator=(const FakeStatusNotifierWatcher&) = delete;

    void setManner(Manner manner)
    {
        m_manner = manner;
    }
    /// Whether a panel shows the items; announces the change.
    void setHost(bool isThere);
    /// Removes an item from its list without the item's doing; announces the change.
    void drop(const QString& item);
    /// Adds an item of another program; announces the change.
    void add(const QString& item);

    /// What every call has registered, in order.
    [[nodiscard]] const QStringList& registered() const
    {
        return m_registered;
    }
    /// Including refused ones.
    [[nodiscard]] qsizetype registrationCalls() const;
    /// How often it was asked whether there is a panel, and for its list.
    [[nodiscard]] qsizetype hostQuestions() const;
    /// Calls that a watcher does not have, or with other arguments.
    [[nodiscard]] const QStringList& wrongCalls() const
    {
        return m_wrongCalls;
    }

private:
    [[nodiscard]] std::optional<QDBusMessage> answerTo(const QDBusMessage& call);
    [[nodiscard]] QVariantMap properties() const;
    void announce(const QString& signal, const QVariantList& arguments = {});

    Manner m_manner;
    bool m_hasHost = true;
    QStringList m_registered;
    QStringList m_items; ///< with their paths, as KDE's watcher lists them
    QStringList m_wrongCalls;
    FakeService m_service;
};

} // namespace tallyfox::test
