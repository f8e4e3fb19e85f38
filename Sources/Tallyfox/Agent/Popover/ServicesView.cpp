#include "Tallyfox/Agent/Popover/ServicesView.h"

#include "Tallyfox/Agent/Controls/PushButton.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Popover/ServiceRowView.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace tallyfox {

namespace {

constexpr int headerLineSpacing = 2; // between the lines of the header
constexpr int serviceSpacing = 8; // between services
constexpr int footerSymbolSize = 12;
constexpr int footerSpacing = 5;

} // namespace

class ServicesView::Private {
public:
    explicit Private(ServicesView& view)
        : m_view(view)
        , m_count(new TextLabel{Theme::caption(), Theme::muted(), &view})
        , m_access(new PushButton{tr("Allow Home Folder Access"), ButtonStyle::borderedProminent, &view})
    {
        auto* layout = new QVBoxLayout{&view};
        layout->setContentsMargins(Theme::tabPadding, Theme::tabPadding, Theme::tabPadding, Theme::tabPadding);
        layout->setSpacing(Theme::tabSpacing);
        addHeader(*layout);
        addRows(*layout);
        layout->addWidget(m_access);
        addFooter(*layout);
        layout->addStretch();
        connect(m_access, &PushButton::clicked, &view, &ServicesView::homeAccessRequested);
    }

    void setUsage(const UsageSnapshot& snapshot)
    {
        m_count->setText(tr("Connected Accounts (%1)").arg(connectedCount(snapshot.states)));
        drawProviders(snapshot.states);
        m_access->setVisible(!snapshot.hasHomeAccess);
    }

private:
    void addHeader(QVBoxLayout& layout)
    {
        auto* row = new QHBoxLayout;
        layout.addLayout(row);
        auto* texts = new QVBoxLayout;
        row->addLayout(texts, 1);
        texts->setSpacing(headerLineSpacing);
        texts->addWidget(new TextLabel{tr("Manage AI Services"), Theme::headline(), Theme::ink(), &m_view});
        texts->addWidget(m_count);
        auto* sync = new PushButton{tr("Sync Accounts"), ButtonStyle::bordered, &m_view};
        sync->setSymbol(Symbol::arrowClockwise);
        row->addWidget(sync, 0, Qt::AlignVCenter);
        connect(sync, &PushButton::clicked, &m_view, &ServicesView::refreshRequested);
    }

    void addRows(QVBoxLayout& layout)
    {
        m_rows = new QVBoxLayout;
        layout.addLayout(m_rows);
        m_rows->setSpacing(serviceSpacing);
        for (const ServiceRow& row : stagedServiceRows())
            m_rows->addWidget(rowView(row));
    }

    void addFooter(QVBoxLayout& layout)
    {
        auto* row = new QHBoxLayout;
        layout.addLayout(row);
        row->setSpacing(footerSpacing);
        row->addWidget(new SymbolView{Symbol::shieldLock, footerSymbolSize, Theme::muted(), &m_view});
        const QString text = tr("All data is processed on your Mac");
        row->addWidget(new TextLabel{text, Theme::caption(), Theme::muted(), &m_view}, 1);
    }

    ServiceRowView* rowView(const ServiceRow& row)
    {
        auto* view = new ServiceRowView{&m_view};
        view->setRow(row);
        return view;
    }

    /// Above the staged rows; the rows that stay are told their new texts.
    void drawProviders(const std::vector<ProviderState>& states)
    {
        m_providers.resize(std::min(m_providers.size(), states.size()));
        for (std::size_t i = 0; i < states.size(); ++i) {
            if (i == m_providers.size()) {
                m_providers.push_back(std::make_unique<ServiceRowView>(&m_view));
                m_rows->insertWidget(static_cast<int>(i), m_providers.back().get());
            }
            m_providers[i]->setRow(serviceRow(states[i]));
        }
    }

    ServicesView& m_view;
    TextLabel* m_count;
    PushButton* m_access;
    QVBoxLayout* m_rows = nullptr;
    std::vector<std::unique_ptr<ServiceRowView>> m_providers; // owned here: the number of states may fall
};

ServicesView::ServicesView(QWidget* parent)
    : TabView(parent)
    , m(std::make_unique<Private>(*this))
{ }

ServicesView::~ServicesView() = default;

void ServicesView::setUsage(const UsageSnapshot& snapshot)
{
    m->setUsage(snapshot);
}

} // namespace tallyfox
