#include "Tallyfox/Agent/Popover/OverviewView.h"

#include "Tallyfox/Agent/Charts/LineChart.h"
#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Popover/ChartPoint.h"
#include "Tallyfox/Agent/Popover/ProviderCard.h"
#include "Tallyfox/Agent/Popover/RefreshFooter.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace tallyfox {

namespace {

constexpr int trendSpacing = 8; // between the header and the chart
constexpr int chevronSize = 13;

QHBoxLayout* makeTrendHeader(const QString& title, QWidget* parent)
{
    auto* row = new QHBoxLayout;
    row->addWidget(new TextLabel{title, Theme::headline(), Theme::ink(), parent}, 1);
    row->addWidget(new SymbolView{Symbol::chevronRight, chevronSize, Theme::muted(), parent});
    return row;
}

QVBoxLayout* makeTexts(const QString& title, const QString& line, QWidget* parent)
{
    auto* titleLabel = new TextLabel{title, Theme::headline(), Theme::ink(), parent};
    titleLabel->setMaximumLines(2);
    auto* lineLabel = new TextLabel{line, Theme::caption(), Theme::muted(), parent};
    lineLabel->setMaximumLines(3);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(1);
    texts->addWidget(titleLabel);
    texts->addWidget(lineLabel);
    return texts;
}

void fill(CardButton& button, QWidget* content)
{
    auto* layout = new QVBoxLayout{&button};
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(content);
}

} // namespace

TrendCard::TrendCard(QWidget* parent)
    : QWidget(parent)
    , m_chart(new LineChart{this})
{
    const QString title = tr("30D Trend");
    m_chart->setAccessibleName(title);
    auto* layout = new QVBoxLayout{this};
    layout->setContentsMargins(Theme::cardPadding, Theme::cardPadding, Theme::cardPadding, Theme::cardPadding);
    layout->setSpacing(trendSpacing);
    layout->addLayout(makeTrendHeader(title, this));
    layout->addWidget(m_chart);
}

void TrendCard::setStates(const std::vector<ProviderState>& states, const Calendar& calendar)
{
    m_chart->setData(chartContent(trendPoints(states), calendar));
}

void TrendCard::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    Card::paint(painter, rect());
}

OverviewView::OverviewView(QWidget* parent)
    : TabView(parent)
    , m_invitation(makeInvitation())
    , m_cardColumn(new QVBoxLayout)
{
    m_cardColumn->setSpacing(Theme::tabSpacing);
    auto* column = new QVBoxLayout{this};
    column->setContentsMargins(Theme::tabPadding, Theme::tabPadding, Theme::tabPadding, Theme::tabPadding);
    column->setSpacing(Theme::tabSpacing);
    column->addWidget(m_invitation);
    column->addLayout(m_cardColumn);
    column->addWidget(makeTrendButton());
    m_footer = new RefreshFooter{this};
    column->addWidget(m_footer);
    column->addStretch();
    connect(m_footer, &RefreshFooter::refreshRequested, this, &OverviewView::refreshRequested);
}

OverviewView::~OverviewView() = default;

/// Asks the user to grant access to the home folder, where the histories are.
CardButton* OverviewView::makeInvitation()
{
    auto* button = new CardButton{tr("Enable 30-day usage"), this};
    button->setAccessibleDescription(tr("Opens a folder picker for your home folder"));
    auto* card = new Card{button};
    auto* row = new QHBoxLayout{card};
    row->setContentsMargins(Theme::cardPadding, Theme::cardPadding, Theme::cardPadding, Theme::cardPadding);
    row->setSpacing(10);
    row->addWidget(new IconTile{IconTile::small, Symbol::folderPlus, Theme::accent(), Theme::surfaceStrong(), card});
    row->addLayout(
        makeTexts(tr("Enable 30-day usage"), tr("Allow read-only access to Claude and Codex usage metadata"), card), 1);
    row->addWidget(new TextLabel{tr("Allow Access"), Theme::system(12, QFont::DemiBold), Theme::accent(), card});
    fill(*button, card);
    connect(button, &CardButton::clicked, this, &OverviewView::homeAccessRequested);
    return button;
}

CardButton* OverviewView::makeTrendButton()
{
    auto* button = new CardButton{tr("Open Token Dashboard"), this};
    m_trend = new TrendCard{button};
    fill(*button, m_trend);
    connect(button, &CardButton::clicked, this, &OverviewView::dashboardRequested);
    return button;
}

void OverviewView::setUsage(const UsageSnapshot& snapshot)
{
    m_invitation->setVisible(!snapshot.hasHomeAccess);
    setCards(snapshot);
    m_trend->setStates(snapshot.states, snapshot.calendar);
    m_footer->setStatus(refreshStatusText(snapshot.lastUpdated, snapshot.calendar, locale()));
    m_footer->setRefreshing(snapshot.isRefreshing);
}

void OverviewView::setCards(const UsageSnapshot& snapshot)
{
    const auto isOf = [](const std::unique_ptr<ProviderCard>& card, const ProviderState& state) {
        return card->provider() == state.provider;
    };
    if (!std::equal(m_cards.begin(), m_cards.end(), snapshot.states.begin(), snapshot.states.end(), isOf))
        makeCards(snapshot.states);
    for (std::size_t index = 0; index < m_cards.size(); ++index)
        m_cards[index]->setModel(providerCardModel(snapshot.states[index], snapshot.now, locale()));
}

void OverviewView::makeCards(const std::vector<ProviderState>& states)
{
    m_cards.clear();
    for (const ProviderState& state : states)
        m_cardColumn->addWidget(m_cards.emplace_back(std::make_unique<ProviderCard>(state.provider, this)).get());
}

} // namespace tallyfox
