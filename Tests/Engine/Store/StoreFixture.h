#pragma once

#include "Support/FakeHomeFolderPicker.h"
#include "Support/Moments.h"
#include "Support/ScratchFolder.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Engine/Store/UsageStore.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace tallyfox::test {

/// Records the signals of a store in order, and checks that the store already has the new value.
class Publications : public QObject {
public:
    explicit Publications(const UsageStore& store)
    {
        connect(&store, &UsageStore::isRefreshingPublished, this, [this, &store](bool isRefreshing) {
            EXPECT_EQ(store.isRefreshing(), isRefreshing);
            list.push_back(isRefreshing ? "isRefreshing true" : "isRefreshing false");
        });
        connect(&store, &UsageStore::statesPublished, this, [this] { list.push_back("states"); });
        connect(&store, &UsageStore::lastUpdatedPublished, this, [this] { list.push_back("lastUpdated"); });
        connect(&store, &UsageStore::combinedPercentPublished, this, [this] { list.push_back("combinedPercent"); });
        connect(&store, &UsageStore::hasHomeAccessPublished, this, [this, &store](bool hasAccess) {
            EXPECT_EQ(store.hasHomeAccess(), hasAccess);
            list.push_back(hasAccess ? "hasHomeAccess true" : "hasHomeAccess false");
        });
    }

    std::vector<std::string> list;
};

/// The signals of one refresh.
inline std::vector<std::string> refreshPublications()
{
    return {"isRefreshing true", "states", "lastUpdated", "combinedPercent", "isRefreshing false"};
}

inline QuotaSnapshot exactQuota(double usedPercent)
{
    QuotaSnapshot snapshot;
    snapshot.primary.usedPercent = usedPercent;
    snapshot.confidence = MeasurementConfidence::exact;
    return snapshot;
}

/// During its lifetime a test that runs as root has the permissions of an ordinary user.
class OrdinaryUser {
public:
    OrdinaryUser()
        : m_isLowered(geteuid() == 0)
    {
        constexpr uid_t nobody = 65'534;
        if (m_isLowered && seteuid(nobody) != 0)
            throw std::system_error{errno, std::system_category()};
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser()
    {
        if (m_isLowered && seteuid(0) != 0)
            std::abort(); // later tests would run as the wrong user
    }

private:
    bool m_isLowered;
};

/// An environment in which it is always noon of the same day, with a granted home folder and no `codex`.
class StoreTest : public testing::Test {
protected:
    StoreTest()
    {
        environment.now = [time = now] { return time; };
        environment.calendar = [] { return Calendar::utc(); };
        environment.authorizedHomeURL = [folder = m_home.path()] { return std::optional{folder}; };
        environment.grantHome = [](const std::filesystem::path&) { return true; };
        environment.accountHome = [] { return std::filesystem::path{"/home/ada"}; };
        environment.picker = &picker;
    }

    [[nodiscard]] const std::filesystem::path& home() const
    {
        return m_home.path();
    }

    void writeClaudeHistory(int tokens) const
    {
        writeFile(home() / ".claude/projects/tidings/session.jsonl",
                  R"({"type":"assistant","timestamp":"2026-11-21T09:00:00.000Z","message":{"id":"m1","usage":{)"
                  R"("output_tokens":)"
                      + std::to_string(tokens) + "}}}\n");
    }

    void writeCodexHistory(int tokens) const
    {
        writeFile(
            home() / ".codex/sessions/2026/11/21/rollout.jsonl",
            R"({"timestamp":"2026-11-21T10:00:00.000Z","type":"event_msg","payload":{"type":"token_count","info":{)"
            R"("last_token_usage":{"total_tokens":)"
                + std::to_string(tokens) + "}}}}\n");
    }

    /// Refreshes once and waits for the end.
    static void refresh(UsageStore& store)
    {
        store.refresh();
        EXPECT_TRUE(spinUntil([&] { return !store.isRefreshing(); }));
    }

    static void expectBadge(const ProviderState& state, std::string_view health, std::string_view detail)
    {
        EXPECT_EQ(rawValue(state.health), health);
        EXPECT_EQ(state.detail, detail);
    }

    const Instant now = utcTime(2026, 11, 21, 12);
    FakeHomeFolderPicker picker;
    StoreEnvironment environment;

private:
    ScratchFolder m_home;
};

} // namespace tallyfox::test
