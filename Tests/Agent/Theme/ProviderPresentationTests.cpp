#include "Agent/Popover/ProviderStates.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

struct HealthCase {
    SourceHealth health;
    const char* status;
    const QColor& (*color)();
};

void PrintTo(const HealthCase& health, std::ostream* out)
{
    *out << health.status;
}

class EveryHealth : public testing::TestWithParam<HealthCase> { };

TEST_P(EveryHealth, hasItsLabelAndColourForEveryProvider)
{
    for (const Provider provider : allProviders) {
        ProviderState state = evenState(provider, 1);
        state.health = GetParam().health;
        EXPECT_EQ(serviceRow(state).status, QString::fromUtf8(GetParam().status));
        EXPECT_EQ(serviceRow(state).statusColor, GetParam().color());
    }
}

INSTANTIATE_TEST_SUITE_P(All, EveryHealth,
                         testing::Values(HealthCase{SourceHealth::connected, "Connected", Theme::success},
                                         HealthCase{SourceHealth::localOnly, "Local history", Theme::claude},
                                         HealthCase{SourceHealth::stale, "Stale", Theme::claude},
                                         HealthCase{SourceHealth::permissionRequired, "Permission", Theme::warning},
                                         HealthCase{SourceHealth::unavailable, "Unavailable", Theme::muted}));

TEST(ProviderPresentation, providersHaveTheirSymbolsAndColours)
{
    EXPECT_EQ(presentationOf(Provider::claude).symbol, Symbol::stars);
    EXPECT_EQ(presentationOf(Provider::claude).color(), Theme::claude());
    EXPECT_EQ(presentationOf(Provider::codex).symbol, Symbol::codeSlash);
    EXPECT_EQ(presentationOf(Provider::codex).color(), Theme::codex());
}

TEST(ServiceRow, nameSymbolAndDetailComeFromTheState)
{
    const ServiceRow claude = serviceRow(evenState(Provider::claude, 1));
    EXPECT_EQ(claude.name, QStringLiteral("Claude"));
    EXPECT_EQ(claude.symbol, Symbol::stars);
    EXPECT_EQ(claude.detail, QStringLiteral("Observed from local history"));
    const ServiceRow codex = serviceRow(evenState(Provider::codex, 1));
    EXPECT_EQ(codex.name, QStringLiteral("Codex"));
    EXPECT_EQ(codex.symbol, Symbol::codeSlash);
}

TEST(ServiceRow, stagedServicesAreGeminiThenWindsurf)
{
    const auto rows = stagedServiceRows();
    EXPECT_EQ(rows[0],
              (ServiceRow{QStringLiteral("Gemini"), Symbol::diamond, QStringLiteral("CLI support staged"),
                          QStringLiteral("Coming Soon"), Theme::muted()}));
    EXPECT_EQ(rows[1],
              (ServiceRow{QStringLiteral("Windsurf"), Symbol::wind, QStringLiteral("Credential boundary staged"),
                          QStringLiteral("Coming Soon"), Theme::muted()}));
}

TEST(ConnectedCount, staleStatesDoNotCount)
{
    std::vector<ProviderState> states(3);
    states[0].health = SourceHealth::connected;
    states[1].health = SourceHealth::stale;
    states[2].health = SourceHealth::localOnly;
    EXPECT_EQ(connectedCount(states), 1);
    EXPECT_EQ(connectedCount({}), 0);
}

} // namespace
} // namespace tallyfox::test
