#include "Tallyfox/Agent/Settings/AccessibleSettings.h"

#include "Tallyfox/Agent/Settings/SettingsTabBar.h"
#include "Tallyfox/Agent/Settings/SettingsWindow.h"

#include <QAccessibleWidget>
#include <QKeySequence>
#include <QPointer>

#include <algorithm>
#include <vector>

namespace tallyfox {

namespace {

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

    mutable std::vector<QAccessible::Id> m_tabs; ///< those that were handed out; the toolkit keeps them by number
};

QAccessibleInterface* interfaceOfSettings(const QString& /*className*/, QObject* object)
{
    if (auto* const bar = qobject_cast<SettingsTabBar*>(object))
        return new TabBarInterface{*bar};
    if (auto* const window = qobject_cast<SettingsWindow*>(object))
        return new QAccessibleWidget{window, QAccessible::Window};
    return nullptr;
}

} // namespace

void installAccessibleSettings()
{
    QAccessible::installFactory(interfaceOfSettings);
}

} // namespace tallyfox
