#include "Engine/Store/StoreFixture.h"
#include "Support/AnyHistory.h"
#include "Support/HistoryRecords.h"
#include "Tallyfox/Engine/Store/RefreshRun.h"

#include <optional>
#include <rapidcheck/gtest.h>
#include <string>
#include <vector>

namespace tallyfox::test {
namespace {

UsageSummary summaryOf(const std::vector<AnyRecord>& records, Instant now)
{
    std::vector<UsageSample> samples;
    for (const AnyRecord& record : records) {
        UsageSample sample;
        sample.timestamp = now - std::chrono::hours{record.second};
        sample.totalTokens = record.total;
        samples.push_back(sample);
    }
    return {samples, now, Calendar::utc()};
}

/// Any result of a load.
ProviderUpdate anyUpdate(Instant now)
{
    ProviderUpdate update;
    update.provider = *anyProvider();
    if (*rc::gen::arbitrary<bool>())
        update.summary = summaryOf(*rc::gen::container<std::vector<AnyRecord>>(anyRecord()), now);
    update.isPartialHistory = update.summary && *rc::gen::arbitrary<bool>();
    update.historyPermissionRequired = !update.summary && *rc::gen::arbitrary<bool>();
    if (*rc::gen::arbitrary<bool>())
        update.quota = exactQuota(*rc::gen::inRange(-50, 200));
    update.quotaFailed = !update.quota && *rc::gen::arbitrary<bool>();
    update.attemptedAt = now;
    return update;
}

RC_GTEST_PROP(RefreshProperty, mergingTheSameUpdateAgainChangesNothing, ())
{
    const Instant now = utcTime(2026, 11, 21, 12);
    const ProviderUpdate first = anyUpdate(now);
    ProviderUpdate second = anyUpdate(now);
    second.provider = first.provider;
    const ProviderState before = merge(first, nullptr, now, Calendar::utc());
    const ProviderState once = merge(second, &before, now, Calendar::utc());
    RC_ASSERT(merge(second, &once, now, Calendar::utc()) == once);
}

RC_GTEST_PROP(RefreshProperty, failureNeverLosesEarlierData, ())
{
    const Instant now = utcTime(2026, 11, 21, 12);
    const ProviderState before = merge(anyUpdate(now), nullptr, now, Calendar::utc());
    ProviderUpdate failed;
    failed.provider = before.provider;
    failed.quotaFailed = *rc::gen::arbitrary<bool>();
    failed.historyPermissionRequired = *rc::gen::arbitrary<bool>();
    failed.attemptedAt = now + std::chrono::hours{1};
    const ProviderState after = merge(failed, &before, now + std::chrono::hours{1}, Calendar::utc());
    RC_ASSERT(after.summary == before.summary);
    RC_ASSERT(after.quota == before.quota);
    RC_ASSERT(after.updatedAt == before.updatedAt);
    RC_ASSERT(after.isQuotaStale == (failed.quotaFailed && before.quota.has_value()));
}

class RefreshPropertyTest : public StoreTest { };

RC_GTEST_FIXTURE_PROP(RefreshPropertyTest, refreshingAgainShowsTheSame, ())
{
    for (const Provider provider : allProviders) {
        const std::vector<std::string> lines = (*anyFile()).lines(provider);
        writeFile(historyRoot(provider, home()) / "session.jsonl", textOf(lines));
    }
    UsageStore store{environment};
    refresh(store);
    const std::vector<ProviderState> first = store.states();
    refresh(store);
    RC_ASSERT(store.states() == first);
}

} // namespace
} // namespace tallyfox::test
