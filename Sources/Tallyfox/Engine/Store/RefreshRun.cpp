#include "Tallyfox/Engine/Store/RefreshRun.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>

namespace tallyfox {

namespace {

constexpr std::chrono::milliseconds stopTimeout{250}; ///< for loads that were asked to stop

std::size_t toIndex(Provider provider)
{
    return static_cast<std::size_t>(provider);
}

/// The result of `step`, or nothing if it throws.
template <typename Step> auto valueOrNothing(const Step& step) noexcept -> std::optional<decltype(step())>
{
    try {
        return step();
    } catch (...) {
        return std::nullopt;
    }
}

bool fetchesQuota(Provider provider, const StoreEnvironment& environment)
{
    return traitsOf(provider).hasQuota && environment.fetchQuota;
}

void loadHistory(ProviderUpdate& update, const StoreEnvironment& environment, const Calendar& calendar) noexcept
{
    const auto home = valueOrNothing(environment.authorizedHomeURL).value_or(std::nullopt);
    update.historyPermissionRequired = !home;
    const auto scan = valueOrNothing([&] { return scanHistory(update.provider, home); });
    if (!scan || !scan->result)
        return;
    update.summary = valueOrNothing([&] { return UsageSummary{scan->result->samples, environment.now(), calendar}; });
    update.isPartialHistory = update.summary && scan->result->isPartial;
}

void loadQuota(ProviderUpdate& update, const StoreEnvironment& environment, const std::stop_token& stop) noexcept
{
    const auto fetched = valueOrNothing([&] { return environment.fetchQuota(stop); });
    if (fetched && std::holds_alternative<QuotaSnapshot>(*fetched))
        update.quota = std::get<QuotaSnapshot>(*fetched);
    update.quotaFailed = !update.quota;
}

/// Loads one provider once: its history first, then its quota, if it has one. The days are those of `calendar`. Every
/// failure, including any exception, becomes part of the update. Any thread.
ProviderUpdate loadProvider(Provider provider, const StoreEnvironment& environment, const Calendar& calendar,
                            const std::stop_token& stop) noexcept
{
    ProviderUpdate update;
    update.provider = provider;
    loadHistory(update, environment, calendar);
    if (fetchesQuota(provider, environment))
        loadQuota(update, environment, stop);
    update.attemptedAt = valueOrNothing(environment.now).value_or(distantPast);
    return update;
}

/// The update of a load that could not be started.
ProviderUpdate failedLoad(Provider provider, const StoreEnvironment& environment) noexcept
{
    ProviderUpdate update;
    update.provider = provider;
    update.quotaFailed = fetchesQuota(provider, environment);
    update.attemptedAt = valueOrNothing(environment.now).value_or(distantPast);
    return update;
}

} // namespace

std::filesystem::path historyRoot(Provider provider, const std::filesystem::path& home)
{
    return home / traitsOf(provider).historyFolder;
}

HistoryScan scanHistory(Provider provider, const std::optional<std::filesystem::path>& home)
{
    if (!home)
        return {.result = std::nullopt, .permissionRequired = true};
    HistoryScan scan;
    auto outcome = LocalUsageScanner::scanResult(provider, historyRoot(provider, *home));
    if (auto* result = std::get_if<LocalUsageScanResult>(&outcome))
        scan.result = std::move(*result);
    return scan;
}

class RefreshRun::Mailbox {
public:
    explicit Mailbox(QObject* receiver)
        : m_receiver(receiver)
    { }

    void deliver(ProviderUpdate update)
    {
        const std::lock_guard lock{m_mutex};
        m_updates.at(toIndex(update.provider)) = std::move(update);
        if (!isComplete())
            return;
        m_completed.notify_all();
        // Under the lock, so that the receiver cannot be destroyed meanwhile. The event carries no data: everything
        // that the threads exchange is guarded by this lock.
        if (m_receiver)
            QCoreApplication::postEvent(m_receiver, new QEvent{QEvent::User});
    }

    void forgetReceiver()
    {
        const std::lock_guard lock{m_mutex};
        m_receiver = nullptr;
    }

    bool waitUntilComplete(std::chrono::milliseconds limit)
    {
        std::unique_lock lock{m_mutex};
        return m_completed.wait_for(lock, limit, [this] { return isComplete(); });
    }

    Updates take()
    {
        const std::lock_guard lock{m_mutex};
        Updates updates;
        std::transform(m_updates.begin(), m_updates.end(), updates.begin(),
                       [](std::optional<ProviderUpdate>& update) { return std::move(update.value()); });
        return updates;
    }

private:
    [[nodiscard]] bool isComplete() const
    {
        return std::all_of(m_updates.begin(), m_updates.end(), [](const auto& update) { return update.has_value(); });
    }

    std::mutex m_mutex; ///< guards everything below
    std::condition_variable m_completed;
    QObject* m_receiver;
    std::array<std::optional<ProviderUpdate>, allProviders.size()> m_updates;
};

RefreshRun::RefreshRun(const StoreEnvironment& environment, QObject* receiver)
    : m_calendar(environment.calendar())
    , m_mailbox(std::make_shared<Mailbox>(receiver))
{
    for (const Provider provider : allProviders) {
        auto load = [provider, own = StoreEnvironment{environment}, calendar = m_calendar, mailbox = m_mailbox,
                     stop = m_stop.get_token()]() mutable {
            ProviderUpdate update = loadProvider(provider, own, calendar, stop);
            own = {}; // release the environment before anyone sees the update
            mailbox->deliver(std::move(update));
        };
        try {
            m_threads.at(toIndex(provider)) = std::thread{std::move(load)};
        } catch (const std::system_error&) {
            m_mailbox->deliver(failedLoad(provider, environment));
        }
    }
}

RefreshRun::~RefreshRun()
{
    abandon();
    const bool isComplete = m_mailbox->waitUntilComplete(stopTimeout);
    for (std::thread& thread : m_threads) {
        if (!thread.joinable())
            continue;
        if (isComplete)
            thread.join();
        else
            thread.detach();
    }
}

RefreshRun::Updates RefreshRun::takeUpdates()
{
    return m_mailbox->take();
}

void RefreshRun::abandon()
{
    m_mailbox->forgetReceiver();
    m_stop.request_stop();
}

} // namespace tallyfox
