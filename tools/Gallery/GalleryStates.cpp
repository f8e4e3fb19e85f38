#include "Gallery/GalleryStates.h"

#include <chrono>
#include <cstdint>
#include <utility>

namespace tallyfox::gallery {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;

/// 2026-11-21T14:05:00Z, a Saturday.
constexpr Instant now{std::chrono::sys_days{std::chrono::year{2026} / 11 / 21} + hours{14} + minutes{5}};

/// A year of work with weekends, holidays and some long days; the same numbers on every machine.
UsageSummary yearOfWork(Provider provider, std::int64_t typicalTokens)
{
    std::vector<UsageSample> samples;
    std::uint32_t random = provider == Provider::claude ? 20'261'121U : 7U;
    for (int day = 364; day >= 0; --day) {
        random = random * 1'664'525U + 1'013'904'223U;
        const Instant moment = now - days{day} - hours{1};
        const std::chrono::weekday weekday{floor<days>(moment)};
        const bool isFree = day % 90 > 80 || (weekday == std::chrono::Sunday && random % 3 != 0);
        if (isFree)
            continue;
        UsageSample sample;
        sample.provider = provider;
        sample.timestamp = moment;
        sample.totalTokens = typicalTokens / 4 + typicalTokens * static_cast<std::int64_t>(random >> 16U) / 32'768;
        samples.push_back(sample);
    }
    return {samples, now, Calendar::utc()};
}

ProviderUpdate update(Provider provider, std::int64_t typicalTokens)
{
    ProviderUpdate result;
    result.provider = provider;
    result.summary = yearOfWork(provider, typicalTokens);
    result.attemptedAt = now;
    return result;
}

QuotaSnapshot quota(double primaryPercent, double weeklyPercent)
{
    QuotaSnapshot result;
    result.primary = {.usedPercent = primaryPercent, .resetsAt = now + hours{2} + minutes{10}, .windowMinutes = 300};
    result.secondary = {.usedPercent = weeklyPercent, .resetsAt = now + days{3} + hours{5}, .windowMinutes = 10'080};
    result.confidence = MeasurementConfidence::exact;
    return result;
}

ProviderState merged(const ProviderUpdate& update, const ProviderState* previous = nullptr)
{
    return merge(update, previous, now, Calendar::utc());
}

ProviderState withQuota(std::int64_t typicalTokens)
{
    ProviderUpdate codex = update(Provider::codex, typicalTokens);
    codex.quota = quota(42.5, 61);
    return merged(codex);
}

GalleryState state(const QString& name, std::vector<ProviderState> states)
{
    GalleryState result{.name = name,
                        .usage = {.states = std::move(states), .lastUpdated = now, .hasHomeAccess = true}};
    result.usage.combinedPercent = combinedPercent(result.usage.states);
    result.usage.now = now;
    return result;
}

GalleryState noData()
{
    GalleryState result = state(
        QStringLiteral("no-data"),
        {initialState(Provider::claude, now, Calendar::utc()), initialState(Provider::codex, now, Calendar::utc())});
    result.usage.lastUpdated = std::nullopt;
    result.usage.hasHomeAccess = false;
    result.usage.isRefreshing = true;
    return result;
}

GalleryState localHistory()
{
    return state(QStringLiteral("local"),
                 {merged(update(Provider::claude, 2'400'000)), merged(update(Provider::codex, 900'000))});
}

GalleryState partialHistory()
{
    ProviderUpdate claude = update(Provider::claude, 24'000'000);
    claude.isPartialHistory = true;
    ProviderUpdate codex = update(Provider::codex, 90'000);
    codex.isPartialHistory = true;
    codex.quota = quota(7.25, 3);
    return state(QStringLiteral("partial"), {merged(claude), merged(codex)});
}

GalleryState quotaWithWeeklyWindow()
{
    return state(QStringLiteral("quota"), {merged(update(Provider::claude, 2'400'000)), withQuota(900'000)});
}

GalleryState staleQuota()
{
    const ProviderState before = withQuota(900'000);
    ProviderUpdate failed = update(Provider::codex, 950'000);
    failed.quotaFailed = true;
    return state(QStringLiteral("stale"), {merged(update(Provider::claude, 2'400'000)), merged(failed, &before)});
}

GalleryState permissionRequired()
{
    const auto denied = [](Provider provider) {
        ProviderUpdate result;
        result.provider = provider;
        result.historyPermissionRequired = true;
        result.attemptedAt = now;
        return result;
    };
    GalleryState result =
        state(QStringLiteral("permission"), {merged(denied(Provider::claude)), merged(denied(Provider::codex))});
    result.usage.hasHomeAccess = false;
    return result;
}

/// Twelve-digit token counts, and a detail longer than any real one.
GalleryState longest()
{
    ProviderState claude = merged(update(Provider::claude, 29'876'543'210));
    claude.detail = "A detail text that is half as long again as the longest one the store has today";
    ProviderState codex = withQuota(27'654'321'098);
    codex.detail = claude.detail;
    codex.quota->primary.usedPercent = 12'345.6;
    return state(QStringLiteral("longest"), {claude, codex});
}

} // namespace

std::vector<GalleryState> galleryStates()
{
    return {noData(),     localHistory(),       partialHistory(), quotaWithWeeklyWindow(),
            staleQuota(), permissionRequired(), longest()};
}

} // namespace tallyfox::gallery
