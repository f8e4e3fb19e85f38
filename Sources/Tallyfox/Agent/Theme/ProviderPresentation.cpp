#include "Tallyfox/Agent/Theme/ProviderPresentation.h"

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Agent/Theme/Translations.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include <QCoreApplication>

#include <algorithm>

namespace tallyfox {

namespace {

constexpr std::array presentations{
    ProviderPresentation{
        .provider = Provider::claude,
        .subtitle = QLatin1String{"Claude Code"},
        .symbol = Symbol::stars,
        .color = &Theme::claude,
        .threshold = &Preferences::claudeThreshold,
    },
    ProviderPresentation{
        .provider = Provider::codex,
        .subtitle = QLatin1String{"ChatGPT"},
        .symbol = Symbol::codeSlash,
        .color = &Theme::codex,
        .threshold = &Preferences::codexThreshold,
    },
};
static_assert(hasRowOfEachProvider(presentations), "a provider has no row, or not at its place");

struct ServiceRowText {
    Q_DECLARE_TR_FUNCTIONS(ServiceRow)
};

ServiceRow stagedRow(const QString& name, Symbol symbol, const QString& detail)
{
    return {name, symbol, detail, ServiceRowText::tr("Coming Soon"), Theme::muted()};
}

} // namespace

const ProviderPresentation& presentationOf(Provider provider)
{
    return presentations.at(static_cast<std::size_t>(provider));
}

QString providerTitle(Provider provider)
{
    const std::string_view title = traitsOf(provider).title;
    return QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()));
}

ServiceRow serviceRow(const ProviderState& state)
{
    return {providerTitle(state.provider), presentationOf(state.provider).symbol, translatedText(state.detail),
            translatedText(rawValue(state.health)), healthColor(state.health)};
}

std::array<ServiceRow, 2> stagedServiceRows()
{
    return {stagedRow(QStringLiteral("Gemini"), Symbol::diamond, ServiceRowText::tr("CLI support staged")),
            stagedRow(QStringLiteral("Windsurf"), Symbol::wind, ServiceRowText::tr("Credential boundary staged"))};
}

std::int64_t connectedCount(std::span<const ProviderState> states)
{
    return std::count_if(states.begin(), states.end(),
                         [](const ProviderState& state) { return state.health == SourceHealth::connected; });
}

const QColor& healthColor(SourceHealth health)
{
    switch (health) {
    case SourceHealth::connected:
        return Theme::success();
    case SourceHealth::localOnly:
    case SourceHealth::stale:
        return Theme::claude();
    case SourceHealth::permissionRequired:
        return Theme::warning();
    case SourceHealth::unavailable:
        break;
    }
    return Theme::muted();
}

} // namespace tallyfox
