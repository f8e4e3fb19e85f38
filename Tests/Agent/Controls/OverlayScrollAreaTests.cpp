#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Controls/OverlayScrollArea.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QScrollBar>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

class OverlayScrollAreaTest : public testing::Test {
protected:
    OverlayScrollAreaTest()
    {
        area.resize(200, 100);
        area.setWidget(content);
    }

    void showContentOfHeight(int height)
    {
        content->setMinimumHeight(height);
        area.show();
        settle();
    }

    /// The visible scroll bar.
    [[nodiscard]] QScrollBar* slimBar() const
    {
        return area.findChild<QScrollBar*>({}, Qt::FindDirectChildrenOnly);
    }

    OverlayScrollArea area;
    QWidget* content = new QWidget{&area};
};

TEST_F(OverlayScrollAreaTest, contentThatFitsHasNoScrollBar)
{
    showContentOfHeight(100);
    EXPECT_FALSE(slimBar()->isVisible());
    EXPECT_EQ(content->width(), 200);
}

TEST_F(OverlayScrollAreaTest, longContentScrollsAndKeepsItsWidth)
{
    showContentOfHeight(400);
    EXPECT_TRUE(slimBar()->isVisible());
    EXPECT_EQ(slimBar()->maximum(), 300);
    EXPECT_EQ(content->width(), 200);
    EXPECT_EQ(area.horizontalScrollBar()->maximum(), 0);
}

TEST_F(OverlayScrollAreaTest, scrollBarAndContentStayInSync)
{
    showContentOfHeight(400);
    slimBar()->setValue(120);
    EXPECT_EQ(content->y(), -120);
    area.verticalScrollBar()->setValue(30);
    EXPECT_EQ(slimBar()->value(), 30);
}

TEST_F(OverlayScrollAreaTest, scrollBarIsHiddenWhenContentShrinks)
{
    showContentOfHeight(400);
    showContentOfHeight(50);
    EXPECT_FALSE(slimBar()->isVisible());
}

TEST_F(OverlayScrollAreaTest, areaDoesNotTakeFocus)
{
    EXPECT_EQ(area.focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(slimBar()->focusPolicy(), Qt::NoFocus);
    EXPECT_FALSE(accessibleName(*slimBar()).isEmpty());
}

} // namespace
} // namespace tallyfox::test
