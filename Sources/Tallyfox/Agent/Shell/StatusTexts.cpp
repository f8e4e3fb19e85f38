#include "Tallyfox/Agent/Shell/StatusTexts.h"

#include "Tallyfox/Agent/Popover/ProviderCardModel.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"
#include "Tallyfox/Agent/Theme/Translations.h"
#include "Tallyfox/Engine/CommandLine/TokenText.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <array>
#include <cctype>

namespace tallyfox {

namespace {

struct MenuText {
    Q_DECLARE_TR_FUNCTIONS(StatusMenu)
};

/// The quota with the highest percentage, which is the combined one.
const QuotaWindow* highestQuota(const std::vector<ProviderState>& states)
{
    const QuotaWindow* highest = nullptr;
    for (const ProviderState& state : states) {
        if (state.quota && (highest == nullptr || state.quota->primary.usedPercent > highest->usedPercent))
            highest = &state.quota->primary;
    }
    return highest;
}

QString percentLine(const UsageSnapshot& snapshot, const QLocale& locale, bool hasReset)
{
    const QuotaWindow* quota = highestQuota(snapshot.states);
    if (quota == nullptr || !snapshot.combinedPercent)
        return {};
    const QString percent = MenuText::tr("%1% used").arg(*snapshot.combinedPercent);
    return hasReset ? percent + QStringLiteral(" · ") + resetText(*quota, snapshot.now, locale) : percent;
}

QString providerLine(const ProviderState& state, const QLocale& locale)
{
    const bool hasFigures = state.updatedAt != distantPast && state.health != SourceHealth::permissionRequired;
    const QString text = hasFigures
        ? MenuText::tr("%1 tokens today, %2 in 30 days")
              .arg(tokenText(state.summary.todayTokens, locale), tokenText(state.summary.totalTokens, locale))
        : translatedText(state.detail);
    return MenuText::tr("%1: %2", "a provider and its figures").arg(providerTitle(state.provider), text);
}

/// What shows status items on a desktop that shows none by itself.
struct Remedy {
    std::string_view desktop;
    std::string_view text;
};
constexpr std::string_view bar = "install waybar and give it a tray";
constexpr std::string_view otherRemedy = "add a status area (system tray) to its panel";
constexpr std::array remedies{
    Remedy{"Budgie", otherRemedy}, // has GNOME among its names, but not its shell
    Remedy{"GNOME-Flashback", otherRemedy},
    Remedy{"GNOME", "install gnome-shell-extension-appindicator and enable it in Extensions"},
    Remedy{"sway", bar},
    Remedy{"Hyprland", bar},
    Remedy{"wlroots", bar},
};

std::string firstName(std::string_view desktopNames)
{
    const std::string_view name = desktopNames.substr(0, desktopNames.find(':'));
    const bool isPlain = std::ranges::all_of(name, [](unsigned char letter) { return std::isprint(letter) != 0; });
    return name.empty() || !isPlain ? "this desktop" : std::string{name};
}

} // namespace

QStringList menuFigures(const UsageSnapshot& snapshot, const QLocale& locale, bool hasReset)
{
    QStringList lines{percentLine(snapshot, locale, hasReset)};
    for (const ProviderState& state : snapshot.states)
        lines += providerLine(state, locale);
    return lines;
}

std::string missingStatusAreaText(std::string_view desktopNames)
{
    const std::string list = ':' + std::string{desktopNames} + ':';
    const auto* const remedy = std::ranges::find_if(remedies, [&list](const Remedy& one) {
        return list.find(':' + std::string{one.desktop} + ':') != std::string::npos;
    });
    const bool isKnown = remedy != remedies.end();
    return std::string{isKnown ? remedy->desktop : firstName(desktopNames)} + " shows no status icons: "
        + std::string{isKnown ? remedy->text : otherRemedy} + "; tallyfox --toggle opens the window";
}

} // namespace tallyfox
