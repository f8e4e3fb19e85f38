#include "Tallyfox/Agent/Shell/PopoverPosition.h"

#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

constexpr QSize size{420, 680};
constexpr QRect screen{0, 0, 1920, 1080};

TEST(PopoverPosition, popoverIsBelowATopPanelCentredOnTheClick)
{
    EXPECT_EQ(popoverPosition(QPoint{1000, 12}, {screen, {0, 28, 1920, 1052}}, size), QPoint(790, 28));
}

TEST(PopoverPosition, popoverIsAboveABottomPanel)
{
    EXPECT_EQ(popoverPosition(QPoint{1000, 1070}, {screen, {0, 0, 1920, 1050}}, size), QPoint(790, 1050 - 680));
}

TEST(PopoverPosition, popoverIsBesideASidePanel)
{
    EXPECT_EQ(popoverPosition(QPoint{20, 500}, {screen, {48, 0, 1872, 1080}}, size), QPoint(48, 160));
    EXPECT_EQ(popoverPosition(QPoint{1900, 500}, {screen, {0, 0, 1872, 1080}}, size), QPoint(1872 - 420, 160));
}

TEST(PopoverPosition, clickReportedAtThePixelBesideAPanelIsOnThePanel)
{
    EXPECT_EQ(popoverPosition(QPoint{1000, 28}, {screen, {0, 28, 1920, 1052}}, size), QPoint(790, 28));
    EXPECT_EQ(popoverPosition(QPoint{1000, 1049}, {screen, {0, 0, 1920, 1050}}, size), QPoint(790, 1050 - 680));
    EXPECT_EQ(popoverPosition(QPoint{48, 500}, {screen, {48, 0, 1872, 1080}}, size), QPoint(48, 160));
    EXPECT_EQ(popoverPosition(QPoint{1871, 500}, {screen, {0, 0, 1872, 1080}}, size), QPoint(1872 - 420, 160));
}

TEST(PopoverPosition, clickAtTheEdgeKeepsThePopoverInsideTheWorkArea)
{
    EXPECT_EQ(popoverPosition(QPoint{1915, 12}, {screen, {0, 28, 1920, 1052}}, size), QPoint(1500, 28));
    EXPECT_EQ(popoverPosition(QPoint{5, 12}, {screen, {0, 28, 1920, 1052}}, size), QPoint(0, 28));
    EXPECT_EQ(popoverPosition(QPoint{20, 1079}, {screen, {48, 0, 1872, 1080}}, size), QPoint(48, 400));
}

TEST(PopoverPosition, panelThatReservesNoSpaceIsNotCovered)
{
    EXPECT_EQ(popoverPosition(QPoint{1000, 10}, {screen, screen}, size), QPoint(790, 34));
    EXPECT_EQ(popoverPosition(QPoint{1000, 1069}, {screen, screen}, size), QPoint(790, 1070 - 24 - 680));
}

TEST(PopoverPosition, clickInACornerCountsAsTheTopOrBottomPanel)
{
    EXPECT_EQ(popoverPosition(QPoint{1915, 15}, {screen, screen}, size), QPoint(1500, 39));
    EXPECT_EQ(popoverPosition(QPoint{3, 1070}, {screen, screen}, size), QPoint(0, 1071 - 24 - 680));
    EXPECT_EQ(popoverPosition(QPoint{3, 500}, {screen, screen}, size), QPoint(27, 160));
}

TEST(PopoverPosition, popoverStaysOnTheClickedScreen)
{
    const QRect second{1920, 0, 1280, 1024};
    EXPECT_EQ(popoverPosition(QPoint{1925, 10}, {second, {1920, 24, 1280, 1000}}, size), QPoint(1920, 24));
}

TEST(PopoverPosition, tooSmallWorkAreaShowsTheTopLeftCorner)
{
    const QRect small{0, 0, 400, 300};
    EXPECT_EQ(popoverPosition(QPoint{390, 5}, {small, {0, 20, 400, 280}}, size), QPoint(0, 20));
    EXPECT_EQ(popoverPosition({small, small}, size), QPoint(0, 0));
}

TEST(PopoverPosition, withoutAClickThePopoverIsAtTheEndOfThePanel)
{
    EXPECT_EQ(popoverPosition({screen, {0, 28, 1920, 1052}}, size), QPoint(1500, 28));
    EXPECT_EQ(popoverPosition({screen, {0, 0, 1920, 1050}}, size), QPoint(1500, 370));
    EXPECT_EQ(popoverPosition({screen, {48, 0, 1872, 1080}}, size), QPoint(48, 400));
    EXPECT_EQ(popoverPosition({screen, {0, 0, 1872, 1080}}, size), QPoint(1452, 400));
    const QRect second{1920, 0, 1280, 1024};
    EXPECT_EQ(popoverPosition({second, {1920, 0, 1280, 990}}, size), QPoint(2780, 310));
}

TEST(PopoverPosition, withoutAClickAndAKnownPanelThePopoverIsInTheTopRightCornerBelowAPanelThatMayBeThere)
{
    EXPECT_EQ(popoverPosition({screen, screen}, size), QPoint(1500, 48));
    const QRect second{1920, 100, 1280, 1024};
    EXPECT_EQ(popoverPosition({second, second}, size), QPoint(2780, 148));
}

struct AnchorCase {
    std::optional<QPoint> click;
    Qt::Edges edges;
    QMargins margins;
};

TEST(PopoverAnchor, isTheEdgeThatWasClickedOrTheTopRightCorner)
{
    const std::vector<AnchorCase> cases{
        {std::nullopt, Qt::TopEdge | Qt::RightEdge, {}},
        {QPoint{1000, 10}, Qt::TopEdge | Qt::LeftEdge, {790, 0, 0, 0}},
        {QPoint{1910, 1070}, Qt::BottomEdge | Qt::LeftEdge, {1500, 0, 0, 0}},
        {QPoint{10, 500}, Qt::LeftEdge | Qt::TopEdge, {0, 160, 0, 0}},
        {QPoint{1910, 500}, Qt::RightEdge | Qt::TopEdge, {0, 160, 0, 0}},
    };
    for (const AnchorCase& each : cases) {
        const PopoverAnchor anchor = popoverAnchor(each.click, screen, size);
        EXPECT_TRUE(anchor.edges == each.edges && anchor.margins == each.margins) << each.margins.left();
    }
}

TEST(PopoverAnchor, isRelativeToTheScreen)
{
    const PopoverAnchor anchor = popoverAnchor(QPoint{3190, 1000}, {1920, 0, 1280, 1024}, size);
    EXPECT_TRUE(anchor.edges == (Qt::BottomEdge | Qt::LeftEdge));
    EXPECT_EQ(anchor.margins.left(), 860);
}

} // namespace
} // namespace tallyfox::test
