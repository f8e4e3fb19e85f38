#include "Tallyfox/Agent/Shell/StatusTexts.h"

#include "Tallyfox/Agent/Popover/ProviderCardModel.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"
#include "Tallyfox/Agent/Theme/Translations.h"
#include "Tallyfox/Engine/CommandLine/TokenText.h"

#include <QCoreApplication>
#include <QLocale>

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

QString percentLine(const UsageSnapshot& snapshot, const QLocale& locale)
{
    const QuotaWindow* quota = highestQuota(snapshot.states);
    if (quota == nullptr || !snapshot.combinedPercent)
        return {};
    return MenuText::tr("%1% used").arg(*snapshot.combinedPercent) + QStringLiteral(" · ")
        + resetText(*quota, snapshot.now, locale);
}

QString providerLine(const ProviderState& state, const QLocale& locale)
{
    const bool hasFigures = state.updatedAt != distantPast && state.health != SourceHealth::permissionRequired;
    const QString text = hasFigures
        ? MenuText::tr("%1 tokens today, %2 in 30 days")
              .arg(tokenText(state.summary.todayTokens, locale), tokenText(state.summary.totalTokens, locale))
        : translatedText(state.detail);
    return providerTitle(state.provider) + QStringLiteral(": ") + text;
}

} // namespace

QStringList menuFigures(const UsageSnapshot& snapshot, const QLocale& locale)
{
    QStringList lines{percentLine(snapshot, locale)};
    for (const ProviderState& state : snapshot.states)
        lines += providerLine(state, locale);
    return lines;
}

} // namespace tallyfox
