#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Charts/HeatMap.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

std::vector<HeatCell> cellsOf(std::size_t count, double opacity)
{
    std::vector<HeatCell> cells(count);
    for (std::size_t i = 0; i < count; ++i)
        cells[i] = {QDate{2025, 11, 22}.addDays(static_cast<qint64>(i)), static_cast<std::int64_t>(i), opacity};
    return cells;
}

QImage drawn(HeatMap& map, double scale = 1)
{
    map.resize(map.sizeHint());
    return drawnOnCard(map, scale);
}

TEST(HeatMap, yearFillsSixRowsAndFortySevenCellsOfTheSeventh)
{
    HeatMap map{Theme::accent(), nullptr};
    map.setCells(cellsOf(365, 1));
    EXPECT_EQ(map.sizeHint(), (QSize{53 * 5 + 52 * 2, 7 * 5 + 6 * 2}));
    EXPECT_EQ(HeatMap::cellFrame(0), (QRect{0, 0, 5, 5}));
    EXPECT_EQ(HeatMap::cellFrame(52), (QRect{52 * 7, 0, 5, 5}));
    EXPECT_EQ(HeatMap::cellFrame(53), (QRect{0, 7, 5, 5}));
    EXPECT_EQ(HeatMap::cellFrame(364), (QRect{46 * 7, 6 * 7, 5, 5}));
    const QImage image = drawn(map);
    EXPECT_EQ(image.pixel(46 * 7 + 2, 6 * 7 + 2), Theme::accent().rgb());
    EXPECT_EQ(image.pixel(47 * 7 + 2, 6 * 7 + 2), Theme::surface().rgb());
}

TEST(HeatMap, heightIsZeroWithoutCells)
{
    HeatMap map{Theme::accent(), nullptr};
    EXPECT_EQ(map.sizeHint().height(), 0);
    map.setCells(cellsOf(1, 1));
    EXPECT_EQ(map.sizeHint().height(), 5);
    map.setCells(cellsOf(54, 1));
    EXPECT_EQ(map.sizeHint().height(), 12);
}

TEST(HeatMap, cellIsDrawnAtItsOpacity)
{
    for (const double opacity : {0.08, 0.2, 0.6, 1.0}) {
        HeatMap map{Theme::accent(), nullptr};
        map.setCells(cellsOf(1, opacity));
        EXPECT_TRUE(isNear(drawn(map).pixel(2, 2), over(Theme::surface(), Theme::accent(), opacity))) << opacity;
    }
}

TEST(HeatMap, cornersAreRoundAndGapsAreEmpty)
{
    HeatMap map{Theme::accent(), nullptr};
    map.setCells(cellsOf(60, 1));
    const QImage image = drawn(map);
    EXPECT_NE(image.pixel(0, 0), Theme::accent().rgb());
    EXPECT_EQ(image.pixel(2, 0), Theme::accent().rgb());
    for (int y = 0; y < 5; ++y) {
        EXPECT_EQ(image.pixel(5, y), Theme::surface().rgb());
        EXPECT_EQ(image.pixel(6, y), Theme::surface().rgb());
    }
}

TEST(HeatMap, cellsAreEquallyLargeAtAFractionalScale)
{
    HeatMap map{Theme::accent(), nullptr};
    map.setCells(cellsOf(53, 1));
    const QImage image = drawn(map, 1.25);
    int runs = 0;
    for (int x = 0; x < image.width();) {
        int width = 0;
        while (x < image.width() && image.pixel(x, 3) != Theme::surface().rgb()) {
            ++width;
            ++x;
        }
        if (width > 0) {
            EXPECT_EQ(width, 6);
            ++runs;
        } else {
            ++x;
        }
    }
    EXPECT_EQ(runs, 53);
}

TEST(HeatMap, tooltipHasDayAndTokensOfTheCell)
{
    HeatMap map{Theme::accent(), nullptr};
    std::vector<HeatCell> cells = cellsOf(365, 1);
    cells[54] = {QDate{2026, 11, 15}, 1'260'000, 1};
    map.setCells(cells);
    map.resize(map.sizeHint());
    map.show();
    EXPECT_EQ(tooltipAt(map, {9, 9}), QStringLiteral("Nov 15, 2026: 1.3M"));
}

TEST(HeatMap, everyCellIsExposedWithItsTooltip)
{
    installAccessibleElements();
    HeatMap map{Theme::accent(), nullptr};
    map.setCells(cellsOf(365, 1));
    map.resize(map.sizeHint());
    QAccessibleInterface* root = QAccessible::queryAccessibleInterface(&map);
    EXPECT_EQ(root->role(), QAccessible::Chart);
    ASSERT_EQ(root->childCount(), 365);
    QAccessibleInterface* last = root->child(364);
    EXPECT_EQ(last->text(QAccessible::Name), QStringLiteral("Nov 21, 2026: 364"));
    EXPECT_EQ(last->text(QAccessible::Value), QStringLiteral("364"));
    EXPECT_EQ(last->rect().size(), (QSize{5, 5}));
    const QPoint middle = last->rect().center();
    EXPECT_EQ(root->childAt(middle.x(), middle.y()), last);
}

} // namespace
} // namespace tallyfox::test
