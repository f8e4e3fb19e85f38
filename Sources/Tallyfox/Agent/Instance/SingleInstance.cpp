#include "Tallyfox/Agent/Instance/SingleInstance.h"

#include "Tallyfox/Agent/Bus/SessionBus.h"
#include "Tallyfox/Agent/Instance/BusInstance.h"
#include "Tallyfox/Agent/Instance/SocketInstance.h"

#include <QDeadlineTimer>

namespace tallyfox {

namespace {

constexpr std::chrono::seconds sessionBusLimit{2}; ///< a bus may be slow while a session starts
constexpr std::chrono::milliseconds forwardLimit{2000}; ///< an agent that is just starting has no time yet
constexpr std::chrono::milliseconds findBusLimit{200}; ///< of these; the rest is for the agent

/// By the bus where it answers, else by the socket.
class DesktopInstance : public SingleInstance {
public:
    explicit DesktopInstance(const QString& id)
        : m_id(id)
    { }

    Claim claim() override
    {
        const QDBusConnection bus = answeringSessionBus(sessionBusLimit);
        const Claim byName = bus.isConnected() ? claimBy(std::make_unique<BusInstance>(bus, m_id)) : Claim::impossible;
        return byName != Claim::impossible ? byName : claimBy(std::make_unique<SocketInstance>(runtimeFolder(), m_id));
    }

    bool send(InstanceRequest request) override
    {
        const QDeadlineTimer deadline{forwardLimit};
        const QDBusConnection bus = answeringSessionBus(findBusLimit);
        if (bus.isConnected() && BusInstance{bus, m_id}.send(request, remaining(deadline)))
            return true;
        return SocketInstance{runtimeFolder(), m_id}.send(request, remaining(deadline));
    }

private:
    static std::chrono::milliseconds remaining(const QDeadlineTimer& deadline)
    {
        return std::chrono::milliseconds{deadline.remainingTime()};
    }

    Claim claimBy(std::unique_ptr<SingleInstance> way)
    {
        m_way = std::move(way);
        connect(m_way.get(), &SingleInstance::requested, this, &SingleInstance::requested);
        return m_way->claim();
    }

    QString m_id;
    std::unique_ptr<SingleInstance> m_way;
};

} // namespace

std::unique_ptr<SingleInstance> makeSingleInstance(const QString& id)
{
    return std::make_unique<DesktopInstance>(id);
}

} // namespace tallyfox
