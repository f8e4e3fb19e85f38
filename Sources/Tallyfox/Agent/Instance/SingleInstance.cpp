#include "Tallyfox/Agent/Instance/SingleInstance.h"

#include "Tallyfox/Agent/Bus/SessionBus.h"
#include "Tallyfox/Agent/Instance/BusInstance.h"
#include "Tallyfox/Agent/Instance/SocketInstance.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <array>
#include <unistd.h>

namespace tallyfox {

namespace {

constexpr std::chrono::seconds claimBusTimeout{2}; ///< a bus may be slow while a session starts
constexpr std::chrono::milliseconds sendBusTimeout{200}; ///< the rest of the time is for the agent

constexpr std::array<std::pair<AgentAction, const char*>, 3> actionNames{
    {{AgentAction::show, "show"}, {AgentAction::toggle, "toggle"}, {AgentAction::settings, "settings"}}};

std::unique_ptr<SingleInstance> onBus(const QString& id, std::chrono::milliseconds busTimeout)
{
    const QDBusConnection bus = answeringSessionBus(busTimeout);
    return bus.isConnected() ? std::make_unique<BusInstance>(bus, id) : nullptr;
}

QByteArray runtimeFolder()
{
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    return folder.isEmpty() ? "/run/user/" + QByteArray::number(getuid()) : folder;
}

std::unique_ptr<SingleInstance> onSocket(const QString& id, std::chrono::milliseconds /*busTimeout*/)
{
    return std::make_unique<SocketInstance>(runtimeFolder(), id);
}

/// In order of preference. Null when the session has none.
constexpr std::array instanceBackEnds{&onBus, &onSocket};

/// Uses the first back end that works.
class DesktopInstance : public SingleInstance {
public:
    explicit DesktopInstance(const QString& id)
        : m_id(id)
    { }

    Claim claim() override
    {
        for (const auto make : instanceBackEnds) {
            m_backEnd = make(m_id, claimBusTimeout);
            if (!m_backEnd)
                continue;
            connect(m_backEnd.get(), &SingleInstance::requested, this, &SingleInstance::requested);
            if (const Claim claim = m_backEnd->claim(); claim != Claim::impossible)
                return claim;
        }
        return Claim::impossible;
    }

    bool send(AgentAction action, const QByteArray& activationToken, std::chrono::milliseconds timeout) override
    {
        const QDeadlineTimer deadline{timeout};
        return std::any_of(instanceBackEnds.begin(), instanceBackEnds.end(), [&](const auto make) {
            const auto backEnd = make(m_id, sendBusTimeout);
            return backEnd
                && backEnd->send(action, activationToken, std::chrono::milliseconds{deadline.remainingTime()});
        });
    }

private:
    QString m_id;
    std::unique_ptr<SingleInstance> m_backEnd;
};

} // namespace

bool findRunningAgent(const QString& id)
{
    return chooseSessionBus(id.toUtf8()) || SocketInstance{runtimeFolder(), id}.isListening();
}

const char* toName(AgentAction action)
{
    return std::find_if(actionNames.begin(), actionNames.end(), [&](const auto& each) { return each.first == action; })
        ->second;
}

std::optional<AgentAction> findAction(const QByteArray& name)
{
    const auto* const found =
        std::find_if(actionNames.begin(), actionNames.end(), [&](const auto& each) { return name == each.second; });
    return found != actionNames.end() ? std::optional{found->first} : std::nullopt;
}

std::unique_ptr<SingleInstance> makeSingleInstance(const QString& id)
{
    return std::make_unique<DesktopInstance>(id);
}

} // namespace tallyfox
