#include "Tallyfox/Engine/Store/ProviderLoad.h"

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

ProviderUpdate failedLoad(Provider provider, const StoreEnvironment& environment) noexcept
{
    ProviderUpdate update;
    update.provider = provider;
    update.quotaFailed = fetchesQuota(provider, environment);
    update.attemptedAt = valueOrNothing(environment.now).value_or(distantPast);
    return update;
}

} // namespace tallyfox
