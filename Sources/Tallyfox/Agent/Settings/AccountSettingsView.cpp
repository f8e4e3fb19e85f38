#include "Tallyfox/Agent/Settings/AccountSettingsView.h"

#include "Tallyfox/Agent/Controls/PushButton.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tallyfox {

namespace {

constexpr int accountSpacing = 12;
constexpr int accountLineSpacing = 1;

} // namespace

/// One provider's account: its symbol, name and detail, and its status at the other end.
class AccountSettingsView::Row : public QWidget {
public:
    Row(const ProviderState& state, QWidget* parent)
        : QWidget(parent)
        , m_name(new TextLabel{Theme::system(Theme::body().pixelSize(), QFont::Medium), Theme::ink(), this})
        , m_detail(new TextLabel{Theme::caption(), Theme::muted(), this})
        , m_status(new TextLabel{Theme::body(), Theme::muted(), this})
    {
        auto* const line = new QHBoxLayout{this};
        line->setContentsMargins(0, 0, 0, 0);
        line->setSpacing(accountSpacing);
        const ProviderPresentation& presentation = presentationOf(state.provider);
        const QColor& color = presentation.color();
        const QColor fill = Theme::withOpacity(color, Theme::tileOpacity);
        line->addWidget(new IconTile{IconTile::small, presentation.symbol, color, fill, this});
        auto* const texts = new QVBoxLayout;
        texts->setSpacing(accountLineSpacing);
        texts->addWidget(m_name);
        texts->addWidget(m_detail);
        line->addLayout(texts, 1);
        m_status->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
        line->addWidget(m_status);
        setState(state);
    }

    /// `state` must be of the same provider.
    void setState(const ProviderState& state)
    {
        const ServiceRow row = serviceRow(state);
        m_name->setText(row.name);
        m_detail->setText(row.detail);
        m_status->setText(row.status);
        m_status->setColor(row.statusColor);
    }

private:
    TextLabel* m_name;
    TextLabel* m_detail;
    TextLabel* m_status;
};

AccountSettingsView::AccountSettingsView(QWidget* parent)
    : SettingsForm(parent)
    , m_sync(new PushButton{tr("Sync Accounts"), ButtonStyle::bordered, this})
{
    addConnectedAccounts();
    addLocalHistory();
    addSection(tr("Previously Removed"))->addTextRow(tr("No removed accounts"));
    endSections();
    showHomeAccess(false);
}

void AccountSettingsView::addConnectedAccounts()
{
    m_accountSection = addSection(tr("Connected Accounts"));
    m_sync->setSymbol(Symbol::arrowClockwise);
    m_accountSection->addButtonRow(m_sync);
    connect(m_sync, &QPushButton::clicked, this, &AccountSettingsView::refreshRequested);
}

void AccountSettingsView::addLocalHistory()
{
    SettingsSection* const section = addSection(tr("Local Usage History"));
    m_homeAccess = section->addValueRow(tr("Home directory access"), QString{});
    auto* const grant = new PushButton{tr("Allow Home Folder Access"), ButtonStyle::bordered, this};
    m_grantRow = section->addButtonRow(grant);
    section->addCaptionRow(tr("Claude and Codex usage metadata is read in place and is never copied."));
    connect(grant, &QPushButton::clicked, this, &AccountSettingsView::homeAccessRequested);
}

void AccountSettingsView::setUsage(const UsageSnapshot& snapshot)
{
    showStates(snapshot.states);
    showRefreshing(snapshot.isRefreshing);
    showHomeAccess(snapshot.hasHomeAccess);
}

/// Reuses existing rows: the states are always those of all providers.
void AccountSettingsView::showStates(const std::vector<ProviderState>& states)
{
    for (std::size_t index = 0; index < states.size(); ++index) {
        if (index < m_rows.size()) {
            m_rows[index]->setState(states[index]);
            continue;
        }
        m_rows.push_back(new Row{states[index], m_accountSection});
        m_accountSection->insertWideRow(static_cast<int>(index), m_rows.back());
    }
}

/// A disabled button loses the focus to the next widget. Give it back after the refresh, unless the user has moved it
/// since.
void AccountSettingsView::showRefreshing(bool isRefreshing)
{
    if (m_sync->isEnabled() != isRefreshing)
        return;
    const bool hadFocus = m_sync->hasFocus();
    m_sync->setEnabled(!isRefreshing);
    QWidget* const focus = window()->focusWidget();
    if (isRefreshing)
        m_focusWhileRefreshing = hadFocus ? focus : nullptr;
    else if (m_focusWhileRefreshing && m_focusWhileRefreshing == focus)
        m_sync->setFocus();
}

void AccountSettingsView::showHomeAccess(bool hasHomeAccess)
{
    m_homeAccess->setValue(hasHomeAccess ? tr("Allowed") : tr("Required"));
    m_grantRow->setVisible(!hasHomeAccess);
}

} // namespace tallyfox
