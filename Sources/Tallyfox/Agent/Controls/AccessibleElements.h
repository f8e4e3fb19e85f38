#pragma once

#include <QAccessible>
#include <QRect>
#include <QString>

#include <memory>
#include <vector>

namespace tallyfox {

/// One thing of a drawing that a screen reader can stand on. An element is said by its name, so the name holds the
/// value as well.
struct AccessibleElement {
    QString name{};
    QString value{};
    QAccessible::Role role = QAccessible::StaticText;
    QRect frame{}; ///< in the widget's coordinates
    std::vector<AccessibleElement> children{};
};

/// The elements of a drawing as the toolkit hands them out.
class AccessibleNode;

/// Base, beside QWidget, of a widget that paints what others would build of child widgets: tells a screen reader what
/// is drawn. Nothing is computed before someone asks. Main thread.
class AccessibleDrawing {
public:
    AccessibleDrawing(const AccessibleDrawing&) = delete;
    AccessibleDrawing& operator=(const AccessibleDrawing&) = delete;

    /// What the whole drawing is; its name is the widget's accessible name.
    [[nodiscard]] virtual QAccessible::Role accessibleRole() const = 0;
    /// What is drawn now, in reading order.
    [[nodiscard]] virtual std::vector<AccessibleElement> accessibleElements() const = 0;

    /// The root of the elements, built on the first call after a change. It stands for the widget itself.
    [[nodiscard]] AccessibleNode& accessibleRoot(QWidget& widget);

protected:
    AccessibleDrawing();
    virtual ~AccessibleDrawing(); ///< what was handed out ends here, before the widget does

    /// To be called when other elements are drawn, or in other places: whatever was handed out ends, and `widget`
    /// (this) announces new children.
    void accessibleElementsChanged(QWidget& widget);

private:
    std::unique_ptr<AccessibleNode> m_root;
};

/// Lets the toolkit ask drawings for their elements. Once per process, before the first window; more do no harm.
void installAccessibleElements();

} // namespace tallyfox
