#include "Tallyfox/Agent/Popover/ServicesView.h"

#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/PushButton.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace tallyfox {

namespace {

constexpr int headerLineSpacing = 2; // between the lines of the header
constexpr int serviceSpacing = 8; // between services
constexpr int footerSymbolSize = 12;
constexpr int footerSpacing = 5;
constexpr int iconFrame = 26;
constexpr int symbolSize = 18;
constexpr int rowPadding = 11;
constexpr int cellSpacing = 10; // between icon, texts and status
constexpr int rowLineSpacing = 2; // between name and detail
constexpr int detailLines = 2;

} // namespace

/// A card with a service: icon, name above detail, and the status at the right.
class ServicesView::Row : public Card {
public:
    explicit Row(QWidget* parent)
        : Card(parent)
        , m_name(new TextLabel{Theme::system(Theme::body().pixelSize(), QFont::Medium), Theme::ink(), this})
        , m_detail(new TextLabel{Theme::caption(), Theme::muted(), this})
        , m_status(new TextLabel{Theme::caption2(), Theme::muted(), this})
    {
        m_detail->setMaximumLines(detailLines);
        m_status->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        // Centred in the row, its edge may be between two pixels, which would clip descenders.
        m_status->setContentsMargins(0, 1, 0, 1);
        auto* layout = new QHBoxLayout{this};
        layout->setContentsMargins(rowPadding + iconFrame + cellSpacing, rowPadding, rowPadding, rowPadding);
        layout->setSpacing(cellSpacing);
        auto* texts = new QVBoxLayout;
        layout->addLayout(texts, 1);
        texts->setSpacing(rowLineSpacing);
        texts->addWidget(m_name);
        texts->addWidget(m_detail);
        layout->addWidget(m_status, 0, Qt::AlignVCenter);
    }

    void setRow(const ServiceRow& row)
    {
        m_symbol = row.symbol;
        m_name->setText(row.name);
        m_detail->setText(row.detail);
        m_status->setText(row.status);
        m_status->setColor(row.statusColor);
        update();
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        Card::paintEvent(event);
        QPainter painter{this};
        constexpr double inset = (iconFrame - symbolSize) / 2.0;
        const double top = (height() - symbolSize) / 2.0;
        drawSymbol(painter, m_symbol, {rowPadding + inset, top, symbolSize, symbolSize}, Theme::ink());
    }

private:
    Symbol m_symbol = Symbol::stars;
    TextLabel* m_name;
    TextLabel* m_detail;
    TextLabel* m_status;
};

ServicesView::ServicesView(QWidget* parent)
    : TabView(parent)
    , m_count(new TextLabel{Theme::caption(), Theme::muted(), this})
    , m_access(new PushButton{tr("Allow Home Folder Access"), ButtonStyle::borderedProminent, this})
{
    auto* layout = new QVBoxLayout{this};
    layout->setContentsMargins(Theme::tabPadding, Theme::tabPadding, Theme::tabPadding, Theme::tabPadding);
    layout->setSpacing(Theme::tabSpacing);
    addHeader(*layout);
    addRows(*layout);
    layout->addWidget(m_access);
    addFooter(*layout);
    layout->addStretch();
    connect(m_access, &PushButton::clicked, this, &ServicesView::homeAccessRequested);
}

ServicesView::~ServicesView() = default;

void ServicesView::addHeader(QVBoxLayout& layout)
{
    auto* row = new QHBoxLayout;
    layout.addLayout(row);
    auto* texts = new QVBoxLayout;
    row->addLayout(texts, 1);
    texts->setSpacing(headerLineSpacing);
    texts->addWidget(new TextLabel{tr("Manage AI Services"), Theme::headline(), Theme::ink(), this});
    texts->addWidget(m_count);
    auto* sync = new PushButton{tr("Sync Accounts"), ButtonStyle::bordered, this};
    sync->setSymbol(Symbol::arrowClockwise);
    row->addWidget(sync, 0, Qt::AlignVCenter);
    connect(sync, &PushButton::clicked, this, &ServicesView::refreshRequested);
}

void ServicesView::addRows(QVBoxLayout& layout)
{
    m_rows = new QVBoxLayout;
    layout.addLayout(m_rows);
    m_rows->setSpacing(serviceSpacing);
    for (const ServiceRow& content : stagedServiceRows()) {
        auto* row = new Row{this};
        row->setRow(content);
        m_rows->addWidget(row);
    }
}

void ServicesView::addFooter(QVBoxLayout& layout)
{
    auto* row = new QHBoxLayout;
    layout.addLayout(row);
    row->setSpacing(footerSpacing);
    row->addWidget(new SymbolView{Symbol::shieldLock, footerSymbolSize, Theme::muted(), this});
    const QString text = tr("All data is processed on your Mac");
    row->addWidget(new TextLabel{text, Theme::caption(), Theme::muted(), this}, 1);
}

void ServicesView::setUsage(const UsageSnapshot& snapshot)
{
    m_count->setText(tr("Connected Accounts (%1)").arg(connectedCount(snapshot.states)));
    drawProviders(snapshot.states);
    m_access->setVisible(!snapshot.hasHomeAccess);
}

/// Providers are above the staged rows. Existing widgets are reused.
void ServicesView::drawProviders(const std::vector<ProviderState>& states)
{
    m_providers.resize(std::min(m_providers.size(), states.size()));
    for (std::size_t i = 0; i < states.size(); ++i) {
        if (i == m_providers.size()) {
            m_providers.push_back(std::make_unique<Row>(this));
            m_rows->insertWidget(static_cast<int>(i), m_providers.back().get());
        }
        m_providers[i]->setRow(serviceRow(states[i]));
    }
}

} // namespace tallyfox
