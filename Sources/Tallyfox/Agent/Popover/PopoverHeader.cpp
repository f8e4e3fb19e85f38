#include "Tallyfox/Agent/Popover/PopoverHeader.h"

#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Controls/ToolButton.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHBoxLayout>

namespace tallyfox {

namespace {

constexpr int headerHeight = 52;
constexpr int sidePadding = 14;
constexpr int headerSpacing = 10;

QVBoxLayout* makeTitle(const QString& title, const QString& subtitle, QWidget* parent)
{
    auto* column = new QVBoxLayout;
    column->setSpacing(0);
    column->addStretch();
    column->addWidget(new TextLabel{title, Theme::headline(), Theme::ink(), parent});
    column->addWidget(new TextLabel{subtitle, Theme::caption(), Theme::ink(), parent});
    column->addStretch();
    return column;
}

} // namespace

PopoverHeader::PopoverHeader(QWidget* parent)
    : QWidget(parent)
    , m_keepAwake(new ToggleToolButton{{.off = Symbol::cupHot, .on = Symbol::cupHotFill}, tr("Keep Mac Awake"), this})
{
    setFixedHeight(headerHeight);
    auto* row = new QHBoxLayout{this};
    row->setContentsMargins(sidePadding, 0, sidePadding, 0);
    row->setSpacing(headerSpacing);
    row->addWidget(new IconTile{IconTile::small, Symbol::barChartFill, Theme::cream(), Theme::accent(), this});
    row->addLayout(makeTitle(QStringLiteral("Tallyfox"), tr("Usage Overview"), this), 1);
    addButtons(*row);
    connect(m_keepAwake, &ToggleToolButton::toggleRequested, this, &PopoverHeader::keepAwakeToggled);
}

void PopoverHeader::addButtons(QHBoxLayout& row)
{
    auto* settings = new ToolButton{Symbol::gear, tr("Settings"), this};
    auto* services = new ToolButton{Symbol::plus, tr("Connect Services"), this};
    row.addWidget(m_keepAwake);
    row.addWidget(settings);
    row.addWidget(services);
    connect(settings, &ToolButton::clicked, this, &PopoverHeader::settingsRequested);
    connect(services, &ToolButton::clicked, this, &PopoverHeader::servicesRequested);
}

void PopoverHeader::setKeepsAwake(bool keepsAwake)
{
    m_keepAwake->setOn(keepsAwake);
}

} // namespace tallyfox
