#include "Engine/Store/StoreFixture.h"

namespace tallyfox::test {

namespace {

/// A store whose clock and zone change during its lifetime. Its only record is from 2026-11-21T09:00Z.
class ClockChangeTest : public StoreTest {
protected:
    ClockChangeTest()
    {
        environment.now = [this] { return m_time; };
        environment.calendar = [this] { return m_calendar; };
        writeClaudeHistory(1200);
    }

    /// Changes the zone without a refresh.
    void changeZone(const Calendar& calendar)
    {
        m_calendar = calendar;
    }

    [[nodiscard]] UsageSnapshot snapshot() const
    {
        return m_store->snapshot();
    }

    /// The summary of a refresh at that time, in that zone.
    const UsageSummary& summaryAt(Instant time, const Calendar& calendar = Calendar::utc())
    {
        m_time = time;
        m_calendar = calendar;
        if (!m_store)
            m_store.emplace(environment);
        refresh(*m_store);
        EXPECT_EQ(m_store->lastUpdated(), time);
        return m_store->states()[0].summary;
    }

    [[nodiscard]] const ProviderState& state() const
    {
        return m_store->states()[0];
    }

private:
    Instant m_time = now;
    Calendar m_calendar = Calendar::utc();
    std::optional<UsageStore> m_store;
};

} // namespace

TEST_F(ClockChangeTest, refreshAfterMidnightStartsANewDay)
{
    EXPECT_EQ(summaryAt(utcTime(2026, 11, 21, 23, 59, 59)).todayTokens, 1200);
    const UsageSummary& nextDay = summaryAt(utcTime(2026, 11, 22));
    EXPECT_EQ(nextDay.todayTokens, 0);
    EXPECT_EQ(nextDay.totalTokens, 1200);
    EXPECT_EQ(nextDay.last365Days.back().date, utcTime(2026, 11, 22));
}

TEST_F(ClockChangeTest, clockSetBackADayShowsThatDayAgain)
{
    EXPECT_EQ(summaryAt(utcTime(2026, 11, 22, 12)).todayTokens, 0);
    EXPECT_EQ(summaryAt(utcTime(2026, 11, 21, 12)).todayTokens, 1200);
}

TEST_F(ClockChangeTest, recordsInTheFutureOfAWrongClockDoNotCountUntilItIsRight)
{
    EXPECT_EQ(summaryAt(now).totalTokens, 1200);
    EXPECT_EQ(summaryAt(utcTime(2019, 1, 1)).totalTokens, 0);
    EXPECT_EQ(summaryAt(now).totalTokens, 1200);
    expectBadge(state(), "Local history", "Observed from local history");
}

TEST_F(ClockChangeTest, sleepOfTwoMonthsEmptiesThirtyDaysButNotTheYear)
{
    EXPECT_EQ(summaryAt(now).totalTokens, 1200);
    const UsageSummary& later = summaryAt(now + std::chrono::days{60});
    EXPECT_EQ(later.totalTokens, 0);
    std::int64_t year = 0;
    for (const DailyUsage& day : later.last365Days)
        year += day.tokens;
    EXPECT_EQ(year, 1200);
    expectBadge(state(), "Local history", "Observed from local history");
}

TEST_F(ClockChangeTest, changedZoneMovesTheRecordToItsDayThere)
{
    EXPECT_EQ(summaryAt(now).todayTokens, 1200);
    // At noon UTC it is past midnight in Auckland, where the record is from the evening before.
    const UsageSummary& inAuckland = summaryAt(now, zone("Pacific/Auckland"));
    EXPECT_EQ(inAuckland.todayTokens, 0);
    EXPECT_EQ(inAuckland.totalTokens, 1200);
    EXPECT_EQ(summaryAt(now, zone("America/Los_Angeles")).todayTokens, 1200);
}

TEST_F(ClockChangeTest, snapshotKeepsTheZoneInWhichItsDaysWereCounted)
{
    summaryAt(now, zone("Pacific/Auckland"));
    changeZone(zone("America/Los_Angeles"));
    const UsageSnapshot before = snapshot();
    EXPECT_EQ(before.calendar.timeZoneName(), "Pacific/Auckland");
    EXPECT_EQ(before.calendar.dayOf(before.states[0].summary.last365Days.back().date), localDay(2026, 11, 22));
    EXPECT_EQ(before.now, now);
    EXPECT_EQ(before.lastUpdated, now);
    EXPECT_TRUE(before.hasHomeAccess);
    EXPECT_FALSE(before.isRefreshing);
    summaryAt(now, zone("America/Los_Angeles"));
    EXPECT_EQ(snapshot().calendar.timeZoneName(), "America/Los_Angeles");
}

TEST_F(ClockChangeTest, zoneChangedDuringARefreshAffectsNoneOfItsDays)
{
    summaryAt(now);
    const auto calls = std::make_shared<int>(0);
    environment.calendar = [calls] { return zone(++*calls == 2 ? "Pacific/Auckland" : "America/Los_Angeles"); };
    UsageStore store{environment};
    refresh(store);
    EXPECT_EQ(*calls, 2) << "once for the new store, once for the refresh";
    EXPECT_EQ(store.snapshot().calendar.timeZoneName(), "Pacific/Auckland");
    for (const ProviderState& each : store.states())
        EXPECT_EQ(each.summary.last365Days.size(), 365U);
    EXPECT_EQ(store.states()[0].summary.last365Days.back().date, utcTime(2026, 11, 21, 11));
}

} // namespace tallyfox::test
