#include "Tallyfox/Agent/Controls/AccessibleNode.h"

#include <QWindow>

#include <algorithm>
#include <utility>

namespace tallyfox {

namespace {

/// What the toolkit sees of a node. It belongs to the toolkit's table; the node strikes it off.
class NodeInterface : public QAccessibleInterface {
public:
    explicit NodeInterface(AccessibleNode& node)
        : m_node(node)
    { }

    bool isValid() const override
    {
        return true;
    }

    QObject* object() const override
    {
        return nullptr;
    }

    QWindow* window() const override
    {
        return m_node.widget().window()->windowHandle();
    }

    QAccessibleInterface* parent() const override
    {
        return m_node.parentInterface();
    }

    int childCount() const override
    {
        return m_node.childCount();
    }

    QAccessibleInterface* child(int index) const override
    {
        AccessibleNode* child = m_node.child(index);
        return child ? child->interface() : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        return m_node.indexOf(child);
    }

    QAccessibleInterface* childAt(int x, int y) const override
    {
        AccessibleNode* node = m_node.nodeAt({x, y});
        return node ? node->interface() : nullptr;
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Name)
            return m_node.element().name;
        return kind == QAccessible::Value ? m_node.element().value : QString{};
    }

    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override { }

    QRect rect() const override
    {
        return m_node.frameOnScreen();
    }

    QAccessible::Role role() const override
    {
        return m_node.element().role;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.readOnly = true;
        state.invisible = !m_node.widget().isVisible();
        state.offscreen = !m_node.widget().visibleRegion().intersects(m_node.element().frame);
        return state;
    }

private:
    AccessibleNode& m_node;
};

} // namespace

AccessibleNode::AccessibleNode(QWidget& widget, std::vector<AccessibleElement> elements)
    : m_widget(widget)
{
    adopt(std::move(elements));
}

AccessibleNode::AccessibleNode(QWidget& widget, AccessibleNode& parent, AccessibleElement element)
    : m_widget(widget)
    , m_parent(&parent)
    , m_element(std::move(element))
{
    adopt(std::exchange(m_element.children, {}));
}

AccessibleNode::~AccessibleNode()
{
    if (m_id != 0)
        QAccessible::deleteAccessibleInterface(m_id);
}

void AccessibleNode::adopt(std::vector<AccessibleElement> elements)
{
    m_children.reserve(elements.size());
    for (AccessibleElement& element : elements)
        m_children.push_back(std::unique_ptr<AccessibleNode>{new AccessibleNode{m_widget, *this, std::move(element)}});
}

QAccessibleInterface* AccessibleNode::interface()
{
    if (!m_parent)
        return QAccessible::queryAccessibleInterface(&m_widget);
    if (m_id == 0)
        m_id = QAccessible::registerAccessibleInterface(new NodeInterface{*this});
    return QAccessible::accessibleInterface(m_id);
}

QAccessibleInterface* AccessibleNode::parentInterface() const
{
    return m_parent ? m_parent->interface() : nullptr;
}

QRect AccessibleNode::frameOnScreen() const
{
    return {m_widget.mapToGlobal(m_element.frame.topLeft()), m_element.frame.size()};
}

int AccessibleNode::childCount() const
{
    return static_cast<int>(m_children.size());
}

AccessibleNode* AccessibleNode::child(int index) const
{
    return index >= 0 && index < childCount() ? m_children[static_cast<std::size_t>(index)].get() : nullptr;
}

int AccessibleNode::indexOf(const QAccessibleInterface* child) const
{
    // A child that was never handed out is nobody's.
    const auto found = std::find_if(m_children.begin(), m_children.end(), [child](const auto& node) {
        return node->m_id != 0 && QAccessible::accessibleInterface(node->m_id) == child;
    });
    return found == m_children.end() ? -1 : static_cast<int>(found - m_children.begin());
}

AccessibleNode* AccessibleNode::nodeAt(QPoint onScreen) const
{
    // Siblings may overlap (the lines of a chart do), so what lies inside of any of them comes first.
    for (const auto& child : m_children) {
        if (AccessibleNode* inner = child->nodeAt(onScreen))
            return inner;
    }
    const auto found = std::find_if(m_children.begin(), m_children.end(),
                                    [onScreen](const auto& node) { return node->frameOnScreen().contains(onScreen); });
    return found == m_children.end() ? nullptr : found->get();
}

} // namespace tallyfox
