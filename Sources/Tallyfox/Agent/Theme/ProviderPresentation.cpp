#include "Tallyfox/Agent/Theme/ProviderPresentation.h"

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

namespace tallyfox {

std::string_view providerTitle(Provider provider)
{
    return provider == Provider::claude ? "Claude" : "Codex";
}

Symbol providerSymbol(Provider provider)
{
    return provider == Provider::claude ? Symbol::stars : Symbol::codeSlash;
}

const QColor& providerColor(Provider provider)
{
    return provider == Provider::claude ? Theme::claude() : Theme::codex();
}

} // namespace tallyfox
