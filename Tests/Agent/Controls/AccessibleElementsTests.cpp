#include "Tallyfox/Agent/Controls/AccessibleElements.h"

#include <QWidget>
#include <gmock/gmock.h>

#include <memory>

namespace tallyfox::test {
namespace {

/// A drawing with the elements that a test sets.
class Drawing : public QWidget, public AccessibleDrawing {
public:
    explicit Drawing(std::vector<AccessibleElement> elements)
        : m_elements(std::move(elements))
    {
        installAccessibleElements();
        setAccessibleName(QStringLiteral("Drawing"));
        setGeometry(100, 50, 200, 100);
    }

    void setElements(std::vector<AccessibleElement> elements)
    {
        m_elements = std::move(elements);
        accessibleElementsChanged(*this);
    }

    QAccessible::Role accessibleRole() const override
    {
        return QAccessible::Chart;
    }

    std::vector<AccessibleElement> accessibleElements() const override
    {
        return m_elements;
    }

private:
    std::vector<AccessibleElement> m_elements;
};

AccessibleElement leaf(const char* name, QRect frame)
{
    return {QString::fromUtf8(name),
            QStringLiteral("value of ") + QString::fromUtf8(name),
            QAccessible::ListItem,
            frame,
            {}};
}

/// Two overlapping lists, each with two items side by side.
std::vector<AccessibleElement> twoLists()
{
    const QRect whole{0, 0, 200, 100};
    return {{QStringLiteral("first"),
             {},
             QAccessible::List,
             whole,
             {leaf("a", {0, 0, 10, 10}), leaf("b", {10, 0, 10, 10})}},
            {QStringLiteral("second"),
             {},
             QAccessible::List,
             whole,
             {leaf("c", {0, 50, 10, 10}), leaf("d", {10, 50, 10, 10})}}};
}

QAccessibleInterface& interfaceOf(QWidget& widget)
{
    return *QAccessible::queryAccessibleInterface(&widget);
}

TEST(AccessibleElements, widgetHasRoleOfDrawingAndItsOwnName)
{
    Drawing drawing{twoLists()};
    EXPECT_EQ(interfaceOf(drawing).role(), QAccessible::Chart);
    EXPECT_EQ(interfaceOf(drawing).text(QAccessible::Name), QStringLiteral("Drawing"));
}

TEST(AccessibleElements, elementsAreChildrenInReadingOrder)
{
    Drawing drawing{twoLists()};
    QAccessibleInterface& root = interfaceOf(drawing);
    ASSERT_EQ(root.childCount(), 2);
    QAccessibleInterface* second = root.child(1);
    EXPECT_EQ(second->text(QAccessible::Name), QStringLiteral("second"));
    EXPECT_EQ(second->role(), QAccessible::List);
    ASSERT_EQ(second->childCount(), 2);
    EXPECT_EQ(second->child(0)->text(QAccessible::Name), QStringLiteral("c"));
    EXPECT_EQ(second->child(0)->text(QAccessible::Value), QStringLiteral("value of c"));
    EXPECT_EQ(second->child(0)->role(), QAccessible::ListItem);
    EXPECT_EQ(second->child(0)->childCount(), 0);
}

TEST(AccessibleElements, interfaceOfAnElementIsStableAndKnowsItsIndex)
{
    Drawing drawing{twoLists()};
    QAccessibleInterface& root = interfaceOf(drawing);
    QAccessibleInterface* first = root.child(0);
    EXPECT_EQ(root.child(0), first);
    EXPECT_EQ(first->parent(), &root);
    EXPECT_EQ(first->child(1)->parent(), first);
    EXPECT_EQ(root.indexOfChild(root.child(1)), 1);
    EXPECT_EQ(first->indexOfChild(first->child(1)), 1);
    EXPECT_EQ(first->indexOfChild(root.child(1)), -1);
    EXPECT_EQ(root.child(2), nullptr);
    EXPECT_EQ(root.child(-1), nullptr);
    EXPECT_EQ(first->child(2), nullptr);
}

TEST(AccessibleElements, frameIsInScreenCoordinates)
{
    Drawing drawing{twoLists()};
    QAccessibleInterface* item = interfaceOf(drawing).child(1)->child(1);
    EXPECT_EQ(item->rect(), (QRect{drawing.mapToGlobal(QPoint{10, 50}), QSize{10, 10}}));
}

TEST(AccessibleElements, pointFindsInnermostElement)
{
    Drawing drawing{twoLists()};
    QAccessibleInterface& root = interfaceOf(drawing);
    const auto nameAt = [&](int x, int y) {
        const QPoint point = drawing.mapToGlobal(QPoint{x, y});
        const QAccessibleInterface* hit = root.childAt(point.x(), point.y());
        return hit ? hit->text(QAccessible::Name) : QString{};
    };
    EXPECT_EQ(nameAt(5, 5), QStringLiteral("a"));
    EXPECT_EQ(nameAt(15, 55), QStringLiteral("d"));
    EXPECT_EQ(nameAt(100, 80), QStringLiteral("first"));
    EXPECT_EQ(nameAt(300, 80), QString{});
}

TEST(AccessibleElements, elementOfAHiddenWidgetIsInvisible)
{
    Drawing drawing{twoLists()};
    EXPECT_TRUE(interfaceOf(drawing).child(0)->state().invisible);
    drawing.show();
    EXPECT_FALSE(interfaceOf(drawing).child(0)->state().invisible);
    EXPECT_FALSE(interfaceOf(drawing).child(0)->state().focusable);
}

TEST(AccessibleElements, changeInvalidatesInterfacesAndShowsNewElements)
{
    Drawing drawing{twoLists()};
    QAccessibleInterface& root = interfaceOf(drawing);
    const QAccessible::Id list = QAccessible::uniqueId(root.child(0));
    const QAccessible::Id item = QAccessible::uniqueId(root.child(0)->child(0));
    ASSERT_NE(QAccessible::accessibleInterface(item), nullptr);
    drawing.setElements({leaf("new", {0, 0, 5, 5})});
    EXPECT_EQ(QAccessible::accessibleInterface(list), nullptr);
    EXPECT_EQ(QAccessible::accessibleInterface(item), nullptr);
    ASSERT_EQ(root.childCount(), 1);
    EXPECT_EQ(root.child(0)->text(QAccessible::Name), QStringLiteral("new"));
}

TEST(AccessibleElements, destroyedWidgetInvalidatesAllInterfaces)
{
    auto drawing = std::make_unique<Drawing>(twoLists());
    const QAccessible::Id root = QAccessible::uniqueId(&interfaceOf(*drawing));
    const QAccessible::Id item = QAccessible::uniqueId(interfaceOf(*drawing).child(1)->child(1));
    drawing.reset();
    EXPECT_EQ(QAccessible::accessibleInterface(root), nullptr);
    EXPECT_EQ(QAccessible::accessibleInterface(item), nullptr);
}

/// A listener may ask between the destructors of the drawing and of the widget.
TEST(AccessibleElements, widgetInItsDestructorHasNoElements)
{
    auto drawing = std::make_unique<Drawing>(twoLists());
    const QAccessible::Id root = QAccessible::uniqueId(&interfaceOf(*drawing));
    const QAccessible::Id item = QAccessible::uniqueId(interfaceOf(*drawing).child(0)->child(0));
    int asked = 0;
    QObject::connect(drawing.get(), &QObject::destroyed, drawing.get(), [&] {
        ++asked;
        const QAccessibleInterface* interface = QAccessible::accessibleInterface(root);
        EXPECT_TRUE(!interface || interface->childCount() == 0);
        EXPECT_EQ(QAccessible::accessibleInterface(item), nullptr);
    });
    drawing.reset();
    EXPECT_EQ(asked, 1);
}

TEST(AccessibleElements, installingTwiceIsHarmless)
{
    installAccessibleElements();
    installAccessibleElements();
    Drawing drawing{twoLists()};
    EXPECT_EQ(interfaceOf(drawing).childCount(), 2);
}

TEST(AccessibleElements, otherWidgetKeepsItsInterface)
{
    installAccessibleElements();
    QWidget plain;
    EXPECT_NE(interfaceOf(plain).role(), QAccessible::Chart);
}

} // namespace
} // namespace tallyfox::test
