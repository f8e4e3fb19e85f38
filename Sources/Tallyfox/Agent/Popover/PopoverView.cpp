#include "Tallyfox/Agent/Popover/PopoverView.h"

#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/OverlayScrollArea.h"
#include "Tallyfox/Agent/Controls/SegmentedPicker.h"
#include "Tallyfox/Agent/Popover/PopoverHeader.h"
#include "Tallyfox/Agent/Popover/TabView.h"
#include "Tallyfox/Agent/Popover/TabViews.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <QVBoxLayout>

namespace tallyfox {

namespace {

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

int indexOf(PopoverTab tab)
{
    return static_cast<int>(tab);
}

} // namespace

class PopoverView::Private {
public:
    Private(PopoverView& view, PopoverTab tab)
        : m_view(view)
        , m_header(new PopoverHeader{&view})
        , m_picker(new SegmentedPicker{tr("View"), tabLabels(), &view})
        , m_content(new OverlayScrollArea{&view})
    {
        layOut();
        connect(m_header, &PopoverHeader::keepAwakeToggled, &view, &PopoverView::keepAwakeToggled);
        connect(m_header, &PopoverHeader::settingsRequested, &view, &PopoverView::settingsRequested);
        connect(m_header, &PopoverHeader::servicesRequested, &view,
                [this] { m_picker->setCurrentIndex(indexOf(PopoverTab::services)); });
        m_picker->setCurrentIndex(indexOf(tab));
        showTab();
        connect(m_picker, &SegmentedPicker::currentIndexChanged, &view, [this] { showTab(); });
        view.setFocusProxy(m_picker);
    }

    [[nodiscard]] PopoverTab selectedTab() const
    {
        return allPopoverTabs.at(static_cast<std::size_t>(m_picker->currentIndex()));
    }

    void selectTab(PopoverTab tab)
    {
        m_picker->setCurrentIndex(indexOf(tab));
    }

    void setUsage(const UsageSnapshot& snapshot)
    {
        m_snapshot = snapshot;
        m_tab->setUsage(m_snapshot);
    }

    void setKeepsAwake(bool keepsAwake)
    {
        m_header->setKeepsAwake(keepsAwake);
    }

    void scroll(QAbstractSlider::SliderAction action)
    {
        m_content->verticalScrollBar()->triggerAction(action);
    }

private:
    void layOut()
    {
        auto* pickerRow = new QHBoxLayout;
        pickerRow->setContentsMargins(pickerPadding, pickerPadding, pickerPadding, pickerPadding);
        pickerRow->addWidget(m_picker);
        auto* column = new QVBoxLayout{&m_view};
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(0);
        column->addWidget(m_header);
        column->addWidget(new Divider{&m_view});
        column->addLayout(pickerRow);
        column->addWidget(new Divider{&m_view});
        column->addWidget(m_content, 1);
    }

    /// Replaces the view by a new one of the chosen tab. Who moved in the old one by the keyboard goes on at the
    /// picker: the old view may well be the one that asked, and takes the focus along when it goes.
    void showTab()
    {
        const bool hadFocus = m_tab && m_tab->isAncestorOf(m_view.focusWidget());
        std::unique_ptr<TabView> tab = makeTabView(selectedTab());
        connect(tab.get(), &TabView::refreshRequested, &m_view, &PopoverView::refreshRequested);
        connect(tab.get(), &TabView::homeAccessRequested, &m_view, &PopoverView::homeAccessRequested);
        connect(tab.get(), &TabView::dashboardRequested, &m_view, [this] { selectTab(PopoverTab::dashboard); });
        tab->setUsage(m_snapshot);
        if (hadFocus)
            m_picker->setFocus(Qt::OtherFocusReason);
        m_tab = tab.get();
        m_content->setWidget(tab.release()); // ends the old view
    }

    PopoverView& m_view;
    PopoverHeader* m_header;
    SegmentedPicker* m_picker;
    OverlayScrollArea* m_content;
    TabView* m_tab = nullptr;
    UsageSnapshot m_snapshot;
};

PopoverView::PopoverView(PopoverTab selectedTab, QWidget* parent)
    : QWidget(parent)
{
    setFixedSize(Theme::popoverWidth, Theme::popoverHeight);
    setPalette(Theme::palette());
    setAutoFillBackground(true);
    m = std::make_unique<Private>(*this, selectedTab);
}

PopoverView::~PopoverView() = default;

PopoverTab PopoverView::selectedTab() const
{
    return m->selectedTab();
}

void PopoverView::selectTab(PopoverTab tab)
{
    m->selectTab(tab);
}

void PopoverView::setUsage(const UsageSnapshot& snapshot)
{
    m->setUsage(snapshot);
}

void PopoverView::setKeepsAwake(bool keepsAwake)
{
    m->setKeepsAwake(keepsAwake);
}

/// Paging works wherever the focus is: some of a tab's content has nothing to stop at.
void PopoverView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_PageUp)
        m->scroll(QAbstractSlider::SliderPageStepSub);
    else if (event->key() == Qt::Key_PageDown)
        m->scroll(QAbstractSlider::SliderPageStepAdd);
    else
        QWidget::keyPressEvent(event);
}

} // namespace tallyfox
