#include "Tallyfox/Agent/Settings/SettingsTabBar.h"

#include "Tallyfox/Agent/Controls/Painting.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QAccessibleWidget>
#include <QKeySequence>
#include <QPainter>
#include <QPointer>

#include <algorithm>

namespace tallyfox {

namespace {

constexpr int tabHeight = 54;
constexpr int smallestTabWidth = 96;
constexpr int titlePadding = 14; ///< at each side
constexpr int gap = 2; ///< at each side of a tab
constexpr int symbolTop = 8;
constexpr int tabSymbolSide = 20;
constexpr int titleTop = 30;
constexpr double tabRadius = 8;

class TabInterface : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    TabInterface(SettingsTabBar& bar, int index)
        : m_bar(&bar)
        , m_index(index)
    { }

    bool isValid() const override
    {
        return m_bar && m_index < m_bar->count();
    }

    QObject* object() const override
    {
        return nullptr;
    }

    QWindow* window() const override
    {
        return m_bar->window()->windowHandle();
    }

    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_bar);
    }

    int childCount() const override
    {
        return 0;
    }

    QAccessibleInterface* child(int /*index*/) const override
    {
        return nullptr;
    }

    int indexOfChild(const QAccessibleInterface* /*child*/) const override
    {
        return -1;
    }

    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override
    {
        return nullptr;
    }

    QString text(QAccessible::Text kind) const override
    {
        const QString title = m_bar->tabText(m_index);
        if (kind == QAccessible::Accelerator)
            return QKeySequence::mnemonic(title).toString(QKeySequence::NativeText);
        return kind == QAccessible::Name ? QString{title}.remove(QLatin1Char{'&'}) : QString{};
    }

    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override { }

    QRect rect() const override
    {
        const QRect tab = m_bar->tabRect(m_index);
        return {m_bar->mapToGlobal(tab.topLeft()), tab.size()};
    }

    QAccessible::Role role() const override
    {
        return QAccessible::PageTab;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.selectable = true;
        state.selected = m_bar->currentIndex() == m_index;
        state.focusable = true;
        state.focused = state.selected && m_bar->hasFocus();
        state.invisible = !m_bar->isVisible();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }

    QStringList actionNames() const override
    {
        return {pressAction()};
    }

    void doAction(const QString& name) override
    {
        if (name == pressAction())
            m_bar->setCurrentIndex(m_index);
    }

    QStringList keyBindingsForAction(const QString& name) const override
    {
        return name == pressAction() ? QStringList{text(QAccessible::Accelerator)} : QStringList{};
    }

private:
    QPointer<SettingsTabBar> m_bar;
    int m_index;
};

class TabBarInterface : public QAccessibleWidget {
public:
    explicit TabBarInterface(SettingsTabBar& bar)
        : QAccessibleWidget(&bar, QAccessible::PageTabList)
    { }

    int childCount() const override
    {
        return bar().count();
    }

    QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= childCount())
            return nullptr;
        while (std::ssize(m_tabs) <= index)
            m_tabs.push_back(
                QAccessible::registerAccessibleInterface(new TabInterface{bar(), static_cast<int>(m_tabs.size())}));
        return QAccessible::accessibleInterface(m_tabs[static_cast<std::size_t>(index)]);
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto found = std::find_if(m_tabs.begin(), m_tabs.end(), [child](QAccessible::Id each) {
            return QAccessible::accessibleInterface(each) == child;
        });
        return found == m_tabs.end() ? -1 : static_cast<int>(found - m_tabs.begin());
    }

    QAccessibleInterface* childAt(int x, int y) const override
    {
        return child(bar().tabAt(bar().mapFromGlobal(QPoint{x, y})));
    }

    QAccessibleInterface* focusChild() const override
    {
        return bar().hasFocus() ? child(bar().currentIndex()) : nullptr;
    }

protected:
    ~TabBarInterface() override
    {
        for (const QAccessible::Id tab : m_tabs)
            QAccessible::deleteAccessibleInterface(tab);
    }

private:
    SettingsTabBar& bar() const
    {
        return static_cast<SettingsTabBar&>(*widget());
    }

    mutable std::vector<QAccessible::Id> m_tabs; ///< ids of the interfaces created so far
};

} // namespace

SettingsTabBar::SettingsTabBar(QWidget* parent)
    : QTabBar(parent)
{
    setDrawBase(false);
    setExpanding(false);
    setUsesScrollButtons(false);
    setElideMode(Qt::ElideNone);
    setFont(Theme::caption());
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QTabBar::currentChanged, this, &SettingsTabBar::announceChoice);
}

/// Qt reports the focus only, which a tab selected by its mnemonic does not get.
void SettingsTabBar::announceChoice(int index)
{
    QAccessibleEvent chosen{this, QAccessible::Selection};
    chosen.setChild(index);
    QAccessible::updateAccessibility(&chosen);
}

void SettingsTabBar::addSymbolTab(Symbol symbol, const QString& title)
{
    m_symbols.push_back(symbol); // first, because adding a tab measures and draws it
    addTab(title);
}

void SettingsTabBar::setShowsMnemonics(bool shows)
{
    m_showsMnemonics = shows;
    update();
}

QSize SettingsTabBar::tabSizeHint(int index) const
{
    const int title = QFontMetrics{font()}.size(Qt::TextShowMnemonic, tabText(index)).width();
    return {std::max(title + 2 * titlePadding, smallestTabWidth), tabHeight};
}

QSize SettingsTabBar::minimumTabSizeHint(int index) const
{
    return tabSizeHint(index);
}

void SettingsTabBar::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    for (int index = 0; index < count(); ++index)
        paintTab(painter, index);
}

void SettingsTabBar::paintTab(QPainter& painter, int index) const
{
    const QRect frame = tabRect(index).adjusted(gap, 0, -gap, 0);
    const bool isCurrent = index == currentIndex();
    if (isCurrent) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Theme::surfaceStrong());
        painter.drawRoundedRect(frame, tabRadius, tabRadius);
    }
    const QColor& color = isCurrent ? Theme::accent() : Theme::muted();
    const QRectF symbol(frame.left() + (frame.width() - tabSymbolSide) / 2.0, frame.top() + symbolTop, tabSymbolSide,
                        tabSymbolSide);
    drawSymbol(painter, m_symbols.at(static_cast<std::size_t>(index)), symbol, color);
    painter.setFont(font());
    painter.setPen(isCurrent ? Theme::ink() : Theme::muted());
    int flags = static_cast<int>(Qt::AlignHCenter | Qt::AlignTop) | Qt::TextShowMnemonic;
    if (!m_showsMnemonics)
        flags |= Qt::TextHideMnemonic;
    painter.drawText(frame.adjusted(0, titleTop, 0, 0), flags, tabText(index));
    if (isCurrent && showsFocus(*this))
        paintFocusRing(painter, frame, tabRadius);
}

QAccessibleInterface* makeAccessibleTabBar(SettingsTabBar& bar)
{
    return new TabBarInterface{bar};
}

} // namespace tallyfox
