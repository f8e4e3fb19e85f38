#include "Tallyfox/Agent/KeepAwake/SleepInhibitor.h"

#include "Tallyfox/Agent/Bus/SessionBus.h"
#include "Tallyfox/Agent/KeepAwake/InhibitionRequest.h"

#include <QTimer>

#include <utility>
#include <vector>

namespace tallyfox {

namespace {

/// Asks its back ends in order, the next when one refuses or does not answer within the timeout.
class InhibitionChain : public SleepInhibition {
public:
    using BackEnd = std::function<std::unique_ptr<InhibitionRequest>()>;

    InhibitionChain(std::vector<BackEnd> backEnds, std::chrono::milliseconds timeout)
        : m_backEnds(std::move(backEnds))
    {
        m_timeout.setSingleShot(true);
        m_timeout.setInterval(timeout);
        connect(&m_timeout, &QTimer::timeout, this, &InhibitionChain::askNext);
        askNext();
    }

private:
    void askNext()
    {
        m_request.reset();
        if (m_next == m_backEnds.size()) {
            end();
            return;
        }
        m_request = m_backEnds[m_next++]();
        connect(m_request.get(), &InhibitionRequest::granted, this, &InhibitionChain::hold);
        connect(m_request.get(), &InhibitionRequest::failed, this, &InhibitionChain::handleFailure);
        m_timeout.start();
    }

    void hold()
    {
        m_timeout.stop();
        m_isHeld = true;
        Q_EMIT began();
    }

    /// A service that fails after its grant ends the inhibition: asking the others for a new one is up to the user.
    void handleFailure()
    {
        m_timeout.stop();
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

    std::vector<BackEnd> m_backEnds;
    std::size_t m_next = 0;
    bool m_isHeld = false;
    std::unique_ptr<InhibitionRequest> m_request;
    QTimer m_timeout;
};

class DesktopSleepInhibitor : public SleepInhibitor {
public:
    DesktopSleepInhibitor(BusSource sessionBus, BusSource systemBus, std::chrono::milliseconds timeout)
        : m_sessionBus(std::move(sessionBus))
        , m_systemBus(std::move(systemBus))
        , m_timeout(timeout)
    { }

    std::unique_ptr<SleepInhibition> begin(const QString& reason) override
    {
        std::vector<InhibitionChain::BackEnd> backEnds;
        if (const QDBusConnection bus = m_sessionBus(); bus.isConnected()) {
            for (InhibitionService* request : {&requestPowerManagement, &requestSessionManager, &requestPortal})
                backEnds.emplace_back([this, request, bus, reason] { return request(m_context, bus, reason); });
        }
        backEnds.emplace_back([this, reason] { return requestLoginManager(m_context, m_systemBus(), reason); });
        return std::make_unique<InhibitionChain>(std::move(backEnds), m_timeout);
    }

private:
    BusSource m_sessionBus;
    BusSource m_systemBus;
    std::chrono::milliseconds m_timeout;
    QObject m_context; ///< owns pending calls that have outlived their requests
};

} // namespace

std::unique_ptr<SleepInhibitor> makeSleepInhibitor()
{
    constexpr std::chrono::seconds serviceTimeout{2};
    static constexpr std::chrono::milliseconds busTimeout{200};
    return makeSleepInhibitor([] { return answeringSessionBus(busTimeout); },
                              [] { return answeringSystemBus(busTimeout); }, serviceTimeout);
}

std::unique_ptr<SleepInhibitor> makeSleepInhibitor(BusSource sessionBus, BusSource systemBus,
                                                   std::chrono::milliseconds timeout)
{
    return std::make_unique<DesktopSleepInhibitor>(std::move(sessionBus), std::move(systemBus), timeout);
}

} // namespace tallyfox
