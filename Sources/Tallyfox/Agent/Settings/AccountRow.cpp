#include "Tallyfox/Agent/Settings/AccountRow.h"

#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"
#include "Tallyfox/Agent/Theme/ServiceRow.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tallyfox {

namespace {

constexpr int accountSpacing = 12;
constexpr int accountLineSpacing = 1;

} // namespace

AccountRow::AccountRow(const ProviderState& state, QWidget* parent)
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

void AccountRow::setState(const ProviderState& state)
{
    const ServiceRow row = serviceRow(state);
    m_name->setText(row.name);
    m_detail->setText(row.detail);
    m_status->setText(row.status);
    m_status->setColor(row.statusColor);
}

} // namespace tallyfox
