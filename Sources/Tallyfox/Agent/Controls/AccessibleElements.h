#pragma once

#include <QAccessible>
#include <QRect>
#include <QString>

#include <memory>
#include <vector>

namespace tallyfox {

/// A part of a drawing that a screen reader can move to. Screen readers speak only its name, so the name includes the
/// value.
struct AccessibleElement {
    QString name{};
    QString value{};
    QAccessible::Role role = QAccessible::StaticText;
    QRect frame{}; ///< in the widget's coordinates
    std::vector<AccessibleElement> children{};
};

/// The elements of a drawing as Qt sees them.
class AccessibleNode;

/// Second base, besides QWidget, of widgets that paint what others build from child widgets: exposes what is drawn to
/// screen readers. Nothing is computed until one asks. Main thread.
class AccessibleDrawing {
public:
    AccessibleDrawing(const AccessibleDrawing&) = delete;
    AccessibleDrawing& operator=(const AccessibleDrawing&) = delete;

    /// The role of the whole drawing; its name is the widget's accessible name.
    [[nodiscard]] virtual QAccessible::Role accessibleRole() const = 0;
    /// What is drawn now, in reading order.
    [[nodiscard]] virtual std::vector<AccessibleElement> accessibleElements() const = 0;

    /// The root of the elements, which represents the widget itself. Built on the first call after a change.
    [[nodiscard]] AccessibleNode& accessibleRoot(QWidget& widget);

protected:
    AccessibleDrawing();
    virtual ~AccessibleDrawing(); ///< invalidates all interfaces before QWidget is destroyed

    /// Call when the elements or their places change: invalidates all existing interfaces and announces new children
    /// of `widget` (this).
    void accessibleElementsChanged(QWidget& widget);

private:
    std::unique_ptr<AccessibleNode> m_root;
};

/// Installs the factory that lets Qt ask drawings for their elements. Call once, before the first window; further
/// calls are harmless.
void installAccessibleElements();

} // namespace tallyfox
