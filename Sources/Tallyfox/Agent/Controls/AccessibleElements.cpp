#include "Tallyfox/Agent/Controls/AccessibleElements.h"

#include <QAccessibleWidget>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace tallyfox {

/// An element and its children. Registers its interface with Qt when it is first asked for, and deletes it in the
/// destructor: Qt refers to interfaces by id, so an id of a deleted one is just not found.
class AccessibleNode {
public:
    /// The root, which represents `widget` itself.
    AccessibleNode(QWidget& widget, std::vector<AccessibleElement> elements);
    ~AccessibleNode();
    AccessibleNode(const AccessibleNode&) = delete;
    AccessibleNode& operator=(const AccessibleNode&) = delete;

    [[nodiscard]] QWidget& widget() const
    {
        return m_widget;
    }

    [[nodiscard]] const AccessibleElement& element() const
    {
        return m_element;
    }

    [[nodiscard]] QAccessibleInterface* interface(); ///< the same one on each call
    [[nodiscard]] QAccessibleInterface* parentInterface() const;
    [[nodiscard]] QRect frameOnScreen() const;

    [[nodiscard]] int childCount() const;
    [[nodiscard]] AccessibleNode* child(int index) const; ///< null beyond the children
    [[nodiscard]] int indexOf(const QAccessibleInterface* child) const; ///< -1 for none of them
    /// The innermost element at a point on the screen, or null.
    [[nodiscard]] AccessibleNode* nodeAt(QPoint onScreen) const;

private:
    AccessibleNode(QWidget& widget, AccessibleNode& parent, AccessibleElement element);
    void addChildren(std::vector<AccessibleElement> elements);

    QWidget& m_widget;
    AccessibleNode* m_parent = nullptr;
    AccessibleElement m_element;
    std::vector<std::unique_ptr<AccessibleNode>> m_children;
    QAccessible::Id m_id = 0;
};

namespace {

/// The interface of a node. Qt owns it; the node has Qt delete it.
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
    addChildren(std::move(elements));
}

AccessibleNode::AccessibleNode(QWidget& widget, AccessibleNode& parent, AccessibleElement element)
    : m_widget(widget)
    , m_parent(&parent)
    , m_element(std::move(element))
{
    addChildren(std::exchange(m_element.children, {}));
}

AccessibleNode::~AccessibleNode()
{
    if (m_id != 0)
        QAccessible::deleteAccessibleInterface(m_id);
}

void AccessibleNode::addChildren(std::vector<AccessibleElement> elements)
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
    // A child without an id has no interface yet.
    const auto found = std::find_if(m_children.begin(), m_children.end(), [child](const auto& node) {
        return node->m_id != 0 && QAccessible::accessibleInterface(node->m_id) == child;
    });
    return found == m_children.end() ? -1 : static_cast<int>(found - m_children.begin());
}

AccessibleNode* AccessibleNode::nodeAt(QPoint onScreen) const
{
    // Siblings may overlap (the lines of a chart do), so their children take precedence.
    for (const auto& child : m_children) {
        if (AccessibleNode* inner = child->nodeAt(onScreen))
            return inner;
    }
    const auto found = std::find_if(m_children.begin(), m_children.end(),
                                    [onScreen](const auto& node) { return node->frameOnScreen().contains(onScreen); });
    return found == m_children.end() ? nullptr : found->get();
}

namespace {

/// The interface of the widget, with the elements of the drawing as its children.
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
    /// Null once the AccessibleDrawing base is destroyed, which happens before QWidget's destructor tells Qt.
    AccessibleNode* root() const
    {
        auto* drawing = dynamic_cast<AccessibleDrawing*>(object());
        return drawing ? &drawing->accessibleRoot(*widget()) : nullptr;
    }
};

QAccessibleInterface* makeDrawingInterface(const QString& /*className*/, QObject* object)
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
    QAccessible::installFactory(makeDrawingInterface);
}

} // namespace tallyfox
