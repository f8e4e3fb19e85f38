#include "Tallyfox/Agent/Popover/OverviewView.h"

#include "Tallyfox/Agent/Popover/HomeAccessInvitation.h"
#include "Tallyfox/Agent/Popover/ProviderCard.h"
#include "Tallyfox/Agent/Popover/RefreshFooter.h"
#include "Tallyfox/Agent/Popover/TrendCard.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QLocale>
#include <QVBoxLayout>

#include <algorithm>

namespace tallyfox {

class OverviewView::Private {
public:
    explicit Private(OverviewView& view)
        : m_invitation(new HomeAccessInvitation{&view})
        , m_cardColumn(new QVBoxLayout)
        , m_trendButton(new CardButton{tr("Open Token Dashboard"), &view})
        , m_trend(new TrendCard{m_trendButton})
        , m_footer(new RefreshFooter{&view})
    {
        layOut(view);
        connect(m_invitation, &CardButton::clicked, &view, &OverviewView::homeAccessRequested);
        connect(m_trendButton, &CardButton::clicked, &view, &OverviewView::dashboardRequested);
        connect(m_footer, &RefreshFooter::refreshRequested, &view, &OverviewView::refreshRequested);
    }

    void setUsage(const UsageSnapshot& snapshot, OverviewView& view)
    {
        m_invitation->setVisible(!snapshot.hasHomeAccess);
        setCards(snapshot, view);
        m_trend->setStates(snapshot.states, snapshot.calendar);
        m_footer->setStatus(refreshStatusText(snapshot.lastUpdated, snapshot.calendar, view.locale()));
        m_footer->setRefreshing(snapshot.isRefreshing);
    }

private:
    void layOut(OverviewView& view)
    {
        m_cardColumn->setSpacing(Theme::tabSpacing);
        auto* trendLayout = new QVBoxLayout{m_trendButton};
        trendLayout->setContentsMargins(0, 0, 0, 0);
        trendLayout->addWidget(m_trend);
        auto* column = new QVBoxLayout{&view};
        column->setContentsMargins(Theme::tabPadding, Theme::tabPadding, Theme::tabPadding, Theme::tabPadding);
        column->setSpacing(Theme::tabSpacing);
        column->addWidget(m_invitation);
        column->addLayout(m_cardColumn);
        column->addWidget(m_trendButton);
        column->addWidget(m_footer);
        column->addStretch();
    }

    void setCards(const UsageSnapshot& snapshot, OverviewView& view)
    {
        const auto isOf = [](const std::unique_ptr<ProviderCard>& card, const ProviderState& state) {
            return card->provider() == state.provider;
        };
        if (!std::equal(m_cards.begin(), m_cards.end(), snapshot.states.begin(), snapshot.states.end(), isOf))
            makeCards(snapshot.states, view);
        for (std::size_t index = 0; index < m_cards.size(); ++index)
            m_cards[index]->setModel(providerCardModel(snapshot.states[index], snapshot.now, view.locale()));
    }

    void makeCards(const std::vector<ProviderState>& states, OverviewView& view)
    {
        m_cards.clear();
        for (const ProviderState& state : states)
            m_cardColumn->addWidget(m_cards.emplace_back(std::make_unique<ProviderCard>(state.provider, &view)).get());
    }

    HomeAccessInvitation* m_invitation;
    QVBoxLayout* m_cardColumn;
    std::vector<std::unique_ptr<ProviderCard>> m_cards; ///< they end before the view does
    CardButton* m_trendButton;
    TrendCard* m_trend;
    RefreshFooter* m_footer;
};

OverviewView::OverviewView(QWidget* parent)
    : TabView(parent)
    , m(std::make_unique<Private>(*this))
{ }

OverviewView::~OverviewView() = default;

void OverviewView::setUsage(const UsageSnapshot& snapshot)
{
    m->setUsage(snapshot, *this);
}

} // namespace tallyfox
