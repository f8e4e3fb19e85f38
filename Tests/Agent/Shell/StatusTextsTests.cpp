#include "Support/Moments.h"
#include "Tallyfox/Agent/Shell/StatusTexts.h"

#include <QLocale>
#include <gmock/gmock.h>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const Instant now = utcTime(2026, 11, 21, 14, 5);

ProviderState usedState(Provider provider, std::int64_t earlierTokens, std::int64_t todaysTokens)
{
    UsageSample earlier;
    earlier.timestamp = now - 3 * 24h;
    earlier.totalTokens = earlierTokens;
    UsageSample today;
    today.timestamp = now;
    today.totalTokens = todaysTokens;
    const std::array samples{earlier, today};
    ProviderState state = initialState(provider, now, Calendar::utc());
    state.summary = UsageSummary{samples, now, Calendar::utc()};
    state.health = SourceHealth::localOnly;
    state.updatedAt = now;
    return state;
}

QuotaSnapshot quota(double usedPercent, std::optional<Instant> resetsAt)
{
    QuotaSnapshot result;
    result.primary.usedPercent = usedPercent;
    result.primary.resetsAt = resetsAt;
    return result;
}

UsageSnapshot snapshotOf(std::vector<ProviderState> states)
{
    UsageSnapshot snapshot;
    snapshot.states = std::move(states);
    snapshot.combinedPercent = combinedPercent(snapshot.states);
    snapshot.now = now;
    return snapshot;
}

QStringList figures(const UsageSnapshot& snapshot)
{
    return menuFigures(snapshot, QLocale{QLocale::English}, true);
}

TEST(MenuFigures, eachAssistantHasItsTokens)
{
    const QStringList lines =
        figures(snapshotOf({usedState(Provider::claude, 2'000'000, 890), usedState(Provider::codex, 0, 12'345)}));
    EXPECT_EQ(lines,
              (QStringList{QString{}, QStringLiteral("Claude: 890 tokens today, 2.0M in 30 days"),
                           QStringLiteral("Codex: 12.3K tokens today, 12.3K in 30 days")}));
}

TEST(MenuFigures, percentageHasTheResetOfItsOwnQuota)
{
    ProviderState claude = usedState(Provider::claude, 0, 1);
    claude.quota = quota(12, now + 5h);
    ProviderState codex = usedState(Provider::codex, 0, 1);
    codex.quota = quota(42.5, now + 2h);
    const UsageSnapshot snapshot = snapshotOf({claude, codex});
    EXPECT_EQ(figures(snapshot).first(), QStringLiteral("43% used · Resets in 2 hr."));
    EXPECT_EQ(menuFigures(snapshot, QLocale{QLocale::English}, false).first(), QStringLiteral("43% used"));
    claude.quota = quota(60, std::nullopt);
    EXPECT_EQ(figures(snapshotOf({claude, codex})).first(), QStringLiteral("60% used · Reset not reported"));
}

TEST(MenuFigures, assistantWithoutFiguresSaysWhy)
{
    ProviderState denied = usedState(Provider::claude, 0, 77);
    denied.health = SourceHealth::permissionRequired;
    denied.detail = "Home folder access required";
    const ProviderState waiting = initialState(Provider::codex, now, Calendar::utc());
    EXPECT_EQ(figures(snapshotOf({denied, waiting})),
              (QStringList{QString{}, QStringLiteral("Claude: Home folder access required"),
                           QStringLiteral("Codex: Waiting for first refresh")}));
}

TEST(MissingStatusAreaText, namesTheDesktopAndWhatToInstall)
{
    for (const char* names : {"GNOME", "ubuntu:GNOME", "GNOME-Classic:GNOME"}) {
        EXPECT_THAT(missingStatusAreaText(names), StartsWith("GNOME shows no status icons")) << names;
        EXPECT_THAT(missingStatusAreaText(names), HasSubstr("gnome-shell-extension-appindicator")) << names;
    }
    EXPECT_THAT(missingStatusAreaText("sway"), StartsWith("sway shows no status icons"));
    EXPECT_THAT(missingStatusAreaText("sway:wlroots"), HasSubstr("waybar"));
    EXPECT_THAT(missingStatusAreaText("labwc:wlroots"), HasSubstr("waybar"));
    EXPECT_THAT(missingStatusAreaText("XFCE"), StartsWith("XFCE shows no status icons"));
    EXPECT_THAT(missingStatusAreaText("XFCE"), HasSubstr("status area"));
}

TEST(MissingStatusAreaText, desktopsWithAPanelOfTheirOwnAreNotToldOfGnomesExtension)
{
    for (const char* names : {"Budgie:GNOME", "GNOME-Flashback:GNOME"})
        EXPECT_THAT(missingStatusAreaText(names), Not(HasSubstr("extension"))) << names;
    EXPECT_THAT(missingStatusAreaText("Budgie:GNOME"), StartsWith("Budgie shows"));
}

TEST(MissingStatusAreaText, unknownOrUnprintableNameIsNotShown)
{
    for (const char* names : {"", ":", "bad\nname", "\x1b[31m", "gnöme"})
        EXPECT_THAT(missingStatusAreaText(names), StartsWith("this desktop shows no status icons")) << names;
    EXPECT_THAT(missingStatusAreaText("GNOMEish"), Not(HasSubstr("extension")));
}

TEST(MissingStatusAreaText, alwaysNamesTheCommand)
{
    for (const char* names : {"", "GNOME", "sway", "KDE"})
        EXPECT_THAT(missingStatusAreaText(names), HasSubstr("; tallyfox --toggle opens the window")) << names;
}

} // namespace
} // namespace tallyfox::test
