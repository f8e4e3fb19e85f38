#include "Tallyfox/Agent/KeepAwake/SleepInhibitor.h"

#include "Tallyfox/Agent/Bus/SessionBus.h"
#include "Tallyfox/Agent/KeepAwake/CookieInhibition.h"
#include "Tallyfox/Agent/KeepAwake/DesktopSleepInhibitor.h"
#include "Tallyfox/Agent/KeepAwake/LoginInhibition.h"
#include "Tallyfox/Agent/KeepAwake/PortalInhibition.h"

#include <QTimer>

#include <utility>
#include <vector>

namespace tallyfox {

namespace {

constexpr std::chrono::seconds serviceLimit{2};
constexpr std::chrono::milliseconds busLimit{200};

/// Asks one service; the next when it refuses, or says nothing for as long as the limit.
class InhibitionChain : public SleepInhibition {
public:
    using Service = std::function<std::unique_ptr<InhibitionRequest>()>;

    InhibitionChain(std::vector<Service> services, std::chrono::milliseconds limit)
        : m_services(std::move(services))
    {
        m_limit.setSingleShot(true);
        m_limit.setInterval(limit);
        connect(&m_limit, &QTimer::timeout, this, &InhibitionChain::askNext);
        askNext();
    }

private:
    void askNext()
    {
        m_request.reset();
        if (m_next == m_services.size()) {
            end();
            return;
        }
        m_request = m_services[m_next++]();
        connect(m_request.get(), &InhibitionRequest::granted, this, &InhibitionChain::hold);
        connect(m_request.get(), &InhibitionRequest::failed, this, &InhibitionChain::give);
        m_limit.start();
    }

    void hold()
    {
        m_limit.stop();
        m_isHeld = true;
        Q_EMIT began();
    }

    /// A service that fails after its grant has broken the activity: what the others would say to a new one is for the
    /// user to find out.
    void give()
    {
        m_limit.stop();
        if (!m_isHeld) {
            askNext();
            return;
        }
        m_request.reset();
        end();
    }

    void end()
    {
        QMetaObject::invokeMethod(this, "ended", Qt::QueuedConnection);
    }

    std::vector<Service> m_services;
    std::size_t m_next = 0;
    bool m_isHeld = false;
    std::unique_ptr<InhibitionRequest> m_request;
    QTimer m_limit;
};

} // namespace

DesktopSleepInhibitor::DesktopSleepInhibitor(BusSource sessionBus, BusSource systemBus, std::chrono::milliseconds limit)
    : m_sessionBus(std::move(sessionBus))
    , m_systemBus(std::move(systemBus))
    , m_limit(limit)
{ }

std::unique_ptr<SleepInhibition> DesktopSleepInhibitor::begin(const QString& reason)
{
    const InhibitionContext session{m_sessionBus(), m_keeper, reason};
    std::vector<InhibitionChain::Service> services;
    if (session.bus.isConnected()) {
        services = {
            [session] { return std::make_unique<CookieInhibition>(session, powerManagement(session.reason)); },
            [session] { return std::make_unique<CookieInhibition>(session, sessionManager(session.reason)); },
            [session] { return std::make_unique<PortalInhibition>(session); },
        };
    }
    services.emplace_back([this, reason] {
        return std::make_unique<LoginInhibition>(InhibitionContext{m_systemBus(), m_keeper, reason});
    });
    return std::make_unique<InhibitionChain>(std::move(services), m_limit);
}

std::unique_ptr<SleepInhibitor> makeSleepInhibitor()
{
    return std::make_unique<DesktopSleepInhibitor>([] { return answeringSessionBus(busLimit); },
                                                   [] { return answeringSystemBus(busLimit); }, serviceLimit);
}

} // namespace tallyfox
