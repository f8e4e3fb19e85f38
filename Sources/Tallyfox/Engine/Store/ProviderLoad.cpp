#include "Tallyfox/Engine/Store/ProviderLoad.h"

#include "Tallyfox/Engine/Store/HistoryScan.h"

namespace tallyfox {

namespace {

/// The last resort of a load: a step that throws has brought nothing.
template <typename Step> auto valueOrNothing(const Step& step) noexcept -> std::optional<decltype(step())>
{
    try {
        return step();
    } catch (...) {
        return std::nullopt;
    }
}

bool fetchesQuota(Provider provider, const LoadEnvironment& environment)
{
    return traitsOf(provider).hasQuota && environment.fetchQuota;
}

void loadHistory(ProviderUpdate& update, const LoadEnvironment& environment) noexcept
{
    const auto home = valueOrNothing(environment.authorizedHomeURL).value_or(std::nullopt);
    update.historyPermissionRequired = !home;
    const auto scan = valueOrNothing([&] { return scanHistory(update.provider, home); });
    if (!scan || !scan->result)
        return;
    update.summary = valueOrNothing([&] {
        return UsageSummary{scan->result->samples, environment.now(), environment.calendar()};
    });
    update.isPartialHistory = update.summary && scan->result->isPartial;
}

void loadQuota(ProviderUpdate& update, const LoadEnvironment& environment, const std::stop_token& stop) noexcept
{
    const auto fetched = valueOrNothing([&] { return environment.fetchQuota(stop); });
    if (fetched && std::holds_alternative<QuotaSnapshot>(*fetched))
        update.quota = std::get<QuotaSnapshot>(*fetched);
    update.quotaFailed = !update.quota;
}

} // namespace

ProviderUpdate loadProvider(Provider provider, const LoadEnvironment& environment, const std::stop_token& stop) noexcept
{
    ProviderUpdate update;
    update.provider = provider;
    loadHistory(update, environment);
    if (fetchesQuota(provider, environment))
        loadQuota(update, environment, stop);
    update.attemptedAt = valueOrNothing(environment.now).value_or(distantPast);
    return update;
}

ProviderUpdate failedLoad(Provider provider, const LoadEnvironment& environment) noexcept
{
    ProviderUpdate update;
    update.provider = provider;
    update.quotaFailed = fetchesQuota(provider, environment);
    update.attemptedAt = valueOrNothing(environment.now).value_or(distantPast);
    return update;
}

} // namespace tallyfox
