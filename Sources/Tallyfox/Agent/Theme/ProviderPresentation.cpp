#include "Tallyfox/Agent/Theme/ProviderPresentation.h"

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"

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

} // namespace tallyfox
