#include "Tallyfox/Agent/Popover/ProviderCardModel.h"

#include "Tallyfox/Agent/Theme/DateFormats.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Agent/Theme/Translations.h"
#include "Tallyfox/Engine/CommandLine/TokenText.h"

#include <QCoreApplication>

#include <cmath>

namespace tallyfox {

namespace {

struct CardText {
    Q_DECLARE_TR_FUNCTIONS(ProviderCard)
};

QString confidenceLabel(MeasurementConfidence confidence)
{
    switch (confidence) {
    case MeasurementConfidence::exact:
        return CardText::tr("Exact");
    case MeasurementConfidence::observed:
        return CardText::tr("Observed");
    case MeasurementConfidence::estimated:
        return CardText::tr("Estimated");
    case MeasurementConfidence::unknown:
        break;
    }
    return CardText::tr("Unknown");
}

const QColor& confidenceColor(MeasurementConfidence confidence)
{
    switch (confidence) {
    case MeasurementConfidence::exact:
        return Theme::success();
    case MeasurementConfidence::observed:
        return Theme::accent();
    case MeasurementConfidence::estimated:
    case MeasurementConfidence::unknown:
        break;
    }
    return Theme::muted();
}

/// Rounded to the nearest integer, halves away from zero; not clamped.
QString wholePercent(double percent)
{
    constexpr double noNegativeZero = 0;
    return QString::number(std::round(percent) + noNegativeZero, 'f', 0);
}

QString resetsText(Instant moment, Instant now, const QLocale& locale)
{
    return CardText::tr("Resets %1", "%1: in 2 hr.").arg(relativeTimeText(moment, now, locale));
}

std::optional<ProviderCardModel::Weekly> weekly(const QuotaSnapshot& quota, Instant now, const QLocale& locale)
{
    if (!quota.secondary)
        return std::nullopt;
    ProviderCardModel::Weekly result{
        .used = CardText::tr("Weekly %1% used").arg(wholePercent(quota.secondary->usedPercent))};
    if (quota.secondary->resetsAt)
        result.reset = resetsText(*quota.secondary->resetsAt, now, locale);
    return result;
}

bool lacksPermission(const ProviderState& state)
{
    return state.health == SourceHealth::permissionRequired;
}

QString localTokenText(const ProviderState& state, const QLocale& locale)
{
    return lacksPermission(state) ? QStringLiteral(u"—") : tokenText(state.summary.totalTokens, locale);
}

QString historyText(const ProviderState& state)
{
    if (lacksPermission(state))
        return CardText::tr("Not enabled");
    return state.isPartialHistory ? CardText::tr("Partial local scan") : CardText::tr("Local metadata");
}

void setQuota(ProviderCardModel& model, const ProviderState& state, const QuotaSnapshot& quota, Instant now,
              const QLocale& locale)
{
    model.figure = wholePercent(quota.primary.usedPercent) + QLatin1Char{'%'};
    model.figureCaption = CardText::tr("used");
    model.note = resetText(quota.primary, now, locale);
    model.quota = {.usedPercent = quota.primary.usedPercent,
                   .accessibleName = CardText::tr("%1 usage", "%1: a provider").arg(model.title),
                   .weekly = weekly(quota, now, locale)};
    model.metrics = {{{CardText::tr("30D Tokens"), tokenText(state.summary.totalTokens, locale)},
                      {CardText::tr("Today"), tokenText(state.summary.todayTokens, locale)},
                      {CardText::tr("Source"), translatedText(state.detail)}}};
}

void setTokens(ProviderCardModel& model, const ProviderState& state, const QLocale& locale)
{
    model.figure = localTokenText(state, locale);
    model.figureCaption = CardText::tr("tokens / 30D");
    model.note = translatedText(state.detail);
    model.metrics = {{{CardText::tr("Today"), tokenText(state.summary.todayTokens, locale)},
                      {CardText::tr("History"), historyText(state)},
                      {CardText::tr("Confidence"), model.confidence.text}}};
}

} // namespace

MeasurementConfidence displayConfidence(const ProviderState& state)
{
    if (state.quota)
        return state.quota->confidence;
    return state.summary.totalTokens > 0 ? MeasurementConfidence::observed : MeasurementConfidence::unknown;
}

QString resetText(const QuotaWindow& window, Instant now, const QLocale& locale)
{
    return window.resetsAt ? resetsText(*window.resetsAt, now, locale) : CardText::tr("Reset not reported");
}

ProviderCardModel providerCardModel(const ProviderState& state, Instant now, const QLocale& locale)
{
    const MeasurementConfidence confidence = displayConfidence(state);
    ProviderCardModel model;
    model.title = providerTitle(state.provider);
    model.subtitle = presentationOf(state.provider).subtitle;
    model.health = {translatedText(rawValue(state.health)), healthColor(state.health)};
    model.confidence = {confidenceLabel(confidence), confidenceColor(confidence)};
    if (state.quota)
        setQuota(model, state, *state.quota, now, locale);
    else
        setTokens(model, state, locale);
    return model;
}

} // namespace tallyfox
