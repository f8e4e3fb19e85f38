#include "Tallyfox/Agent/Popover/ProviderCard.h"

#include "Tallyfox/Agent/Controls/Metric.h"
#include "Tallyfox/Agent/Controls/ProgressIndicators.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QVBoxLayout>

namespace tallyfox {

namespace {

constexpr int rowSpacing = 9;
constexpr int figureSize = 28;

QFont figureFont()
{
    return Theme::system(figureSize, QFont::DemiBold);
}

/// The margin below a caption that puts it on the baseline of the large figure.
int captionDrop()
{
    return QFontMetrics{figureFont()}.descent() - QFontMetrics{Theme::caption()}.descent();
}

TextLabel* captionLabel(QWidget* parent)
{
    return new TextLabel{Theme::caption(), Theme::muted(), parent};
}

} // namespace

ProviderCard::ProviderCard(Provider provider, QWidget* parent)
    : Card(parent)
    , m_provider(provider)
    , m_title(new TextLabel{Theme::headline(), Theme::ink(), this})
    , m_subtitle(captionLabel(this))
    , m_health(new Badge{this})
    , m_confidence(new Badge{this})
    , m_figure(new TextLabel{figureFont(), Theme::ink(), this})
    , m_figureCaption(captionLabel(this))
    , m_note(captionLabel(this))
    , m_bar(new UsageBar{presentationOf(provider).color(), this})
    , m_weeklyUsed(captionLabel(this))
    , m_weeklyReset(captionLabel(this))
    , m_metrics(new MetricRow{3, this})
{
    auto* rows = new QVBoxLayout{this};
    rows->setContentsMargins(Theme::cardPadding, Theme::cardPadding, Theme::cardPadding, Theme::cardPadding);
    rows->setSpacing(rowSpacing);
    rows->addLayout(makeHeader());
    rows->addLayout(makeFigure());
    rows->addWidget(m_bar);
    rows->addLayout(makeWeekly());
    rows->addWidget(m_metrics);
}

Provider ProviderCard::provider() const
{
    return m_provider;
}

QHBoxLayout* ProviderCard::makeHeader()
{
    auto* titles = new QVBoxLayout;
    titles->setSpacing(0);
    titles->addWidget(m_title);
    titles->addWidget(m_subtitle);
    const ProviderPresentation& presentation = presentationOf(m_provider);
    const QColor& color = presentation.color();
    auto* row = new QHBoxLayout;
    row->setSpacing(10);
    row->addWidget(
        new IconTile{IconTile::small, presentation.symbol, color, Theme::withOpacity(color, Theme::tileOpacity), this});
    row->addLayout(titles, 1);
    auto* badges = new QHBoxLayout;
    badges->setSpacing(6);
    badges->addWidget(m_health);
    badges->addWidget(m_confidence);
    row->addLayout(badges);
    return row;
}

QHBoxLayout* ProviderCard::makeFigure()
{
    m_figureCaption->setContentsMargins(0, 0, 0, captionDrop());
    m_note->setContentsMargins(0, 0, 0, captionDrop());
    m_note->setAlignment(Qt::AlignRight | Qt::AlignBottom);
    m_note->setMaximumLines(2);
    // It gets the space that the figure leaves, however long it is.
    QSizePolicy policy = m_note->sizePolicy();
    policy.setHorizontalPolicy(QSizePolicy::Ignored);
    m_note->setSizePolicy(policy);
    auto* row = new QHBoxLayout;
    row->setSpacing(6);
    row->addWidget(m_figure, 0, Qt::AlignBottom);
    row->addWidget(m_figureCaption, 0, Qt::AlignBottom);
    row->addSpacing(6);
    row->addWidget(m_note, 1, Qt::AlignBottom);
    return row;
}

QHBoxLayout* ProviderCard::makeWeekly()
{
    m_weeklyReset->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* row = new QHBoxLayout;
    row->addWidget(m_weeklyUsed);
    row->addWidget(m_weeklyReset, 1);
    return row;
}

void ProviderCard::setModel(const ProviderCardModel& model)
{
    setHeader(model);
    m_figure->setText(model.figure);
    m_figureCaption->setText(model.figureCaption);
    m_note->setText(model.note);
    setQuota(model);
    for (int index = 0; index < static_cast<int>(model.metrics.size()); ++index) {
        const auto& [title, value] = model.metrics[static_cast<std::size_t>(index)];
        m_metrics->setMetric(index, title, value);
    }
}

void ProviderCard::setHeader(const ProviderCardModel& model)
{
    setAccessibleName(model.title);
    m_title->setText(model.title);
    m_subtitle->setText(model.subtitle);
    m_health->setText(model.health.text);
    m_health->setColor(model.health.color);
    m_confidence->setText(model.confidence.text);
    m_confidence->setColor(model.confidence.color);
}

void ProviderCard::setQuota(const ProviderCardModel& model)
{
    const bool hasWeekly = model.quota && model.quota->weekly;
    m_bar->setVisible(model.quota.has_value());
    m_weeklyUsed->setVisible(hasWeekly);
    m_weeklyReset->setVisible(hasWeekly && !model.quota->weekly->reset.isEmpty());
    if (model.quota) {
        m_bar->setAccessibleName(model.quota->accessibleName);
        m_bar->setUsedPercent(model.quota->usedPercent);
    }
    if (hasWeekly) {
        m_weeklyUsed->setText(model.quota->weekly->used);
        m_weeklyReset->setText(model.quota->weekly->reset);
    }
}

} // namespace tallyfox
