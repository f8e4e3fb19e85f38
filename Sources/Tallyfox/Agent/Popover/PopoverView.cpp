#include "Tallyfox/Agent/Popover/PopoverView.h"

#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/OverlayScrollArea.h"
#include "Tallyfox/Agent/Controls/SegmentedPicker.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Controls/ToolButton.h"
#include "Tallyfox/Agent/Popover/DashboardView.h"
#include "Tallyfox/Agent/Popover/OverviewView.h"
#include "Tallyfox/Agent/Popover/RankingView.h"
#include "Tallyfox/Agent/Popover/ServicesView.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include <memory>

namespace tallyfox {

namespace {

constexpr int headerHeight = 52;
constexpr int headerPadding = 14; // at the sides
constexpr int headerSpacing = 10;
constexpr int pickerPadding = 12;

struct TabText {
    Q_DECLARE_TR_FUNCTIONS(PopoverTab)
};

QStringList tabLabels()
{
    QStringList labels;
    for (const PopoverTab tab : allPopoverTabs)
        labels << TabText::tr(rawValue(tab));
    return labels;
}

std::unique_ptr<TabView> makeTabView(PopoverTab tab)
{
    switch (tab) {
    case PopoverTab::dashboard:
        return std::make_unique<DashboardView>();
    case PopoverTab::ranking:
        return std::make_unique<RankingView>();
    case PopoverTab::services:
        return std::make_unique<ServicesView>();
    case PopoverTab::overview:
        break;
    }
    return std::make_unique<OverviewView>();
}

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

PopoverView::PopoverView(PopoverTab selectedTab, QWidget* parent)
    : QWidget(parent)
{
    setFixedSize(Theme::popoverWidth, Theme::popoverHeight);
    setPalette(Theme::palette());
    setAutoFillBackground(true);
    auto* column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHeader());
    column->addWidget(new Divider{this});
    m_picker = new SegmentedPicker{tr("View"), tabLabels(), this};
    auto* pickerRow = new QHBoxLayout;
    pickerRow->setContentsMargins(pickerPadding, pickerPadding, pickerPadding, pickerPadding);
    pickerRow->addWidget(m_picker);
    column->addLayout(pickerRow);
    column->addWidget(new Divider{this});
    m_content = new OverlayScrollArea{this};
    column->addWidget(m_content, 1);
    setFocusProxy(m_picker);
    selectTab(selectedTab);
    showTab();
    connect(m_picker, &SegmentedPicker::currentIndexChanged, this, &PopoverView::showTab);
}

/// The program's name, and buttons for keep-awake, settings and services.
QWidget* PopoverView::makeHeader()
{
    auto* header = new QWidget{this};
    header->setFixedHeight(headerHeight);
    m_keepAwake = new ToggleToolButton{{.off = Symbol::cupHot, .on = Symbol::cupHotFill}, tr("Keep Mac Awake"), header};
    auto* row = new QHBoxLayout{header};
    row->setContentsMargins(headerPadding, 0, headerPadding, 0);
    row->setSpacing(headerSpacing);
    row->addWidget(new IconTile{IconTile::small, Symbol::barChartFill, Theme::cream(), Theme::accent(), header});
    row->addLayout(makeTitle(QStringLiteral("Tallyfox"), tr("Usage Overview"), header), 1);
    auto* settings = new ToolButton{Symbol::gear, tr("Settings"), header};
    auto* services = new ToolButton{Symbol::plus, tr("Connect Services"), header};
    row->addWidget(m_keepAwake);
    row->addWidget(settings);
    row->addWidget(services);
    connect(m_keepAwake, &ToggleToolButton::toggleRequested, this, &PopoverView::keepAwakeToggled);
    connect(settings, &ToolButton::clicked, this, &PopoverView::settingsRequested);
    connect(services, &ToolButton::clicked, this, [this] { selectTab(PopoverTab::services); });
    return header;
}

PopoverTab PopoverView::selectedTab() const
{
    return allPopoverTabs.at(static_cast<std::size_t>(m_picker->currentIndex()));
}

void PopoverView::selectTab(PopoverTab tab)
{
    m_picker->setCurrentIndex(static_cast<int>(tab));
}

/// Replaces the view with a new one for the selected tab. If the old view has the focus, the picker gets it, so that
/// keyboard navigation continues there.
void PopoverView::showTab()
{
    const bool hadFocus = m_tab && m_tab->isAncestorOf(focusWidget());
    std::unique_ptr<TabView> tab = makeTabView(selectedTab());
    connect(tab.get(), &TabView::refreshRequested, this, &PopoverView::refreshRequested);
    connect(tab.get(), &TabView::homeAccessRequested, this, &PopoverView::homeAccessRequested);
    connect(tab.get(), &TabView::dashboardRequested, this, [this] { selectTab(PopoverTab::dashboard); });
    tab->setUsage(m_snapshot);
    if (hadFocus)
        m_picker->setFocus(Qt::OtherFocusReason);
    m_tab = tab.get();
    m_content->setWidget(tab.release()); // deletes the old view
}

void PopoverView::setUsage(const UsageSnapshot& snapshot)
{
    m_snapshot = snapshot;
    m_tab->setUsage(m_snapshot);
}

void PopoverView::setKeepsAwake(bool keepsAwake)
{
    m_keepAwake->setOn(keepsAwake);
}

/// The page keys scroll wherever the focus is: some tabs have little that can take it.
void PopoverView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_PageUp)
        m_content->verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepSub);
    else if (event->key() == Qt::Key_PageDown)
        m_content->verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    else
        QWidget::keyPressEvent(event);
}

} // namespace tallyfox
