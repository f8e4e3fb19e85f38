#pragma once

#include "Tallyfox/Agent/Controls/AccessibleElements.h"

#include <QWidget>

#include <memory>
#include <vector>

namespace tallyfox {

/// An element in its place in the tree. Registers with the toolkit when it is handed out, and takes that back when it
/// ends: the toolkit keeps interfaces by number, and asks by number whether one is still there.
class AccessibleNode {
public:
    /// The root, which stands for `widget` itself.
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
    /// The innermost element at a point of the screen, or null.
    [[nodiscard]] AccessibleNode* nodeAt(QPoint onScreen) const;

private:
    AccessibleNode(QWidget& widget, AccessibleNode& parent, AccessibleElement element);
    void adopt(std::vector<AccessibleElement> elements);

    QWidget& m_widget;
    AccessibleNode* m_parent = nullptr;
    AccessibleElement m_element;
    std::vector<std::unique_ptr<AccessibleNode>> m_children;
    QAccessible::Id m_id = 0;
};

} // namespace tallyfox
