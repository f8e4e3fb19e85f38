#pragma once

#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Popover/ProviderCardModel.h"

class QHBoxLayout;
class QVBoxLayout;

namespace tallyfox {

class Badge;
class MetricRow;
class TextLabel;
class UsageBar;

/// One provider: the health of its source, and its quota or the tokens counted on this computer.
class ProviderCard : public Card {
    Q_OBJECT

public:
    explicit ProviderCard(Provider provider, QWidget* parent = nullptr);

    [[nodiscard]] Provider provider() const;

    /// Shows `model`, which must be of the same provider.
    void setModel(const ProviderCardModel& model);

private:
    QHBoxLayout* makeHeader();
    QHBoxLayout* makeFigure();
    QHBoxLayout* makeWeekly();
    void setHeader(const ProviderCardModel& model);
    void setQuota(const ProviderCardModel& model);

    Provider m_provider;
    TextLabel* m_title;
    TextLabel* m_subtitle;
    Badge* m_health;
    Badge* m_confidence;
    TextLabel* m_figure;
    TextLabel* m_figureCaption;
    TextLabel* m_note;
    UsageBar* m_bar;
    TextLabel* m_weeklyUsed;
    TextLabel* m_weeklyReset;
    MetricRow* m_metrics;
};

} // namespace tallyfox
