#include "Tallyfox/Agent/Controls/AccessibleElements.h"

#include "Tallyfox/Agent/Controls/AccessibleNode.h"

#include <QAccessibleWidget>

namespace tallyfox {

namespace {

/// The widget of a drawing, with the drawing's elements as its children.
class DrawingInterface : public QAccessibleWidget {
public:
    DrawingInterface(QWidget& widget, QAccessible::Role role)
        : QAccessibleWidget(&widget, role)
    { }

    int childCount() const override
    {
        const AccessibleNode* root = this->root();
        return root ? root->childCount() : 0;
    }

    QAccessibleInterface* child(int index) const override
    {
        const AccessibleNode* root = this->root();
        AccessibleNode* child = root ? root->child(index) : nullptr;
        return child ? child->interface() : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        const AccessibleNode* root = this->root();
        return root ? root->indexOf(child) : -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override
    {
        const AccessibleNode* root = this->root();
        AccessibleNode* node = root ? root->nodeAt({x, y}) : nullptr;
        return node ? node->interface() : nullptr;
    }

private:
    /// Null as soon as the drawing's part of the widget has ended, which is before the toolkit hears of it.
    AccessibleNode* root() const
    {
        auto* drawing = dynamic_cast<AccessibleDrawing*>(object());
        return drawing ? &drawing->accessibleRoot(*widget()) : nullptr;
    }
};

QAccessibleInterface* interfaceOfDrawing(const QString& /*className*/, QObject* object)
{
    const auto* drawing = dynamic_cast<AccessibleDrawing*>(object);
    auto* widget = qobject_cast<QWidget*>(object);
    return drawing && widget ? new DrawingInterface{*widget, drawing->accessibleRole()} : nullptr;
}

} // namespace

AccessibleDrawing::AccessibleDrawing() = default;

AccessibleDrawing::~AccessibleDrawing() = default;

AccessibleNode& AccessibleDrawing::accessibleRoot(QWidget& widget)
{
    if (!m_root)
        m_root = std::make_unique<AccessibleNode>(widget, accessibleElements());
    return *m_root;
}

void AccessibleDrawing::accessibleElementsChanged(QWidget& widget)
{
    if (!m_root)
        return;
    m_root.reset();
    QAccessibleEvent event{&widget, QAccessible::ObjectReorder};
    QAccessible::updateAccessibility(&event);
}

void installAccessibleElements()
{
    QAccessible::installFactory(interfaceOfDrawing);
}

} // namespace tallyfox
