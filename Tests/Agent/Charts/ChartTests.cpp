#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Charts/LineChart.h"
#include "Tallyfox/Agent/Charts/StackedBarChart.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QImage>
#include <QPainter>
#include <QToolTip>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <random>
#include <set>

namespace tallyfox::test {
namespace {

using TokensOf = std::function<std::int64_t(int)>;

ChartSeries seriesOf(const char* name, const QColor& color, int days, const TokensOf& tokensOf)
{
    ChartSeries series{QString::fromUtf8(name), color, {}};
    for (int day = 0; day < days; ++day)
        series.values.push_back({static_cast<std::size_t>(day), tokensOf(day)});
    return series;
}

ChartData dataOf(int days, const TokensOf& claude, const TokensOf& codex)
{
    ChartData data;
    for (int day = 0; day < days; ++day)
        data.days.push_back(QDate{2026, 11, 21}.addDays(day - days + 1));
    data.series = {seriesOf("Claude", Theme::claude(), days, claude), seriesOf("Codex", Theme::codex(), days, codex)};
    return data;
}

std::int64_t none(int /*day*/)
{
    return 0;
}

int pixelsOf(const QImage& image, const QColor& color, const QRect& within)
{
    int count = 0;
    for (int y = within.top(); y <= within.bottom(); ++y) {
        for (int x = within.left(); x <= within.right(); ++x)
            count += image.pixel(x, y) == color.rgb() ? 1 : 0;
    }
    return count;
}

int legendHeight()
{
    return QFontMetrics{Theme::caption2()}.height();
}

QRect plotOf(const QWidget& chart)
{
    return chart.rect().adjusted(0, 0, 0, -(legendHeight() + 2));
}

QRect legendOf(const QWidget& chart)
{
    return {0, chart.height() - legendHeight(), chart.width(), legendHeight()};
}

TEST(LineChart, heightIsNinetyTwo)
{
    LineChart chart;
    EXPECT_EQ(chart.height(), 92);
    chart.setData(dataOf(30, none, none));
    EXPECT_EQ(chart.height(), 92);
}

TEST(LineChart, linePassesThroughItsValuesInItsColour)
{
    LineChart chart;
    chart.resize(301, LineChart::totalHeight);
    ChartData data = dataOf(
        3, [](int day) { return day == 1 ? 10 : 0; }, none);
    data.series.pop_back();
    chart.setData(data);
    const QImage image = drawnOnCard(chart);
    EXPECT_EQ(image.pixel(150, 1), Theme::claude().rgb());
    EXPECT_EQ(image.pixel(150, 40), Theme::surface().rgb());
}

TEST(LineChart, flatLineAtZeroIsNotClipped)
{
    LineChart chart;
    chart.resize(300, LineChart::totalHeight);
    chart.setData(dataOf(30, none, none));
    const QRect plot = plotOf(chart);
    // Two pixels thick from end to end: nothing is clipped.
    EXPECT_GE(pixelsOf(drawnOnCard(chart), Theme::codex(), plot), 2 * 298);
}

TEST(LineChart, withoutSeriesNothingIsDrawn)
{
    LineChart chart;
    chart.resize(300, LineChart::totalHeight);
    QImage blank{chart.size(), QImage::Format_RGB32};
    blank.fill(Theme::surface());
    EXPECT_EQ(drawnOnCard(chart), blank);
}

TEST(LineChart, negativeCountIsDrawnAtZero)
{
    LineChart chart;
    chart.resize(300, LineChart::totalHeight);
    chart.setData(dataOf(
        30, [](int day) { return day == 4 ? -500 : 0; }, none));
    const QImage negative = drawnOnCard(chart);
    chart.setData(dataOf(30, none, none));
    EXPECT_EQ(negative, drawnOnCard(chart));
}

TEST(Chart, everySeriesHasADotInTheLegend)
{
    LineChart chart;
    chart.resize(300, LineChart::totalHeight);
    chart.setData(dataOf(30, none, none));
    const QImage image = drawnOnCard(chart);
    EXPECT_GT(pixelsOf(image, Theme::claude(), legendOf(chart)), 10);
    EXPECT_GT(pixelsOf(image, Theme::codex(), legendOf(chart)), 10);
}

TEST(StackedBarChart, heightIsTwoHundredAndTwenty)
{
    EXPECT_EQ(StackedBarChart{}.height(), 220);
}

TEST(StackedBarChart, scaleFitsTheHighestStack)
{
    StackedBarChart chart;
    chart.setData(dataOf(
        7, [](int day) { return day; }, [](int day) { return 2 * day; }));
    EXPECT_EQ(chart.scale(), axisScale(18, 5));
}

TEST(StackedBarChart, seriesAreStacked)
{
    StackedBarChart chart;
    chart.resize(370, StackedBarChart::totalHeight);
    chart.setData(dataOf(
        1, [](int) { return 5; }, [](int) { return 5; }));
    const QImage image = drawnOnCard(chart);
    EXPECT_EQ(image.pixel(150, 150), Theme::claude().rgb());
    EXPECT_EQ(image.pixel(150, 50), Theme::codex().rgb());
}

TEST(StackedBarChart, smallestCountIsVisible)
{
    StackedBarChart chart;
    chart.resize(370, StackedBarChart::totalHeight);
    chart.setData(dataOf(
        7, [](int day) { return day == 0 ? 1'000'000'000'000 : 1; }, none));
    EXPECT_GT(pixelsOf(drawnOnCard(chart), Theme::claude(), plotOf(chart).adjusted(180, 0, 0, 0)), 20);
}

TEST(StackedBarChart, allZeroDrawsNoBarsAndOnlyTheLabelZero)
{
    StackedBarChart chart;
    chart.resize(370, StackedBarChart::totalHeight);
    chart.setData(dataOf(30, none, none));
    const QImage image = drawnOnCard(chart);
    EXPECT_EQ(pixelsOf(image, Theme::claude(), plotOf(chart)), 0);
    for (int y = 0; y < 100; ++y)
        EXPECT_EQ(pixelsOf(image, Theme::surface(), {0, y, 370, 1}), 370) << "something is drawn at " << y;
}

struct Crispness {
    int days;
    double scale;
};

void PrintTo(const Crispness& crispness, std::ostream* out)
{
    *out << crispness.days << " days at " << crispness.scale;
}

class EveryRange : public testing::TestWithParam<Crispness> { };

TEST_P(EveryRange, barsHaveSharpEdges)
{
    StackedBarChart chart;
    chart.resize(370, StackedBarChart::totalHeight);
    chart.setData(dataOf(
        GetParam().days, [](int day) { return 100 + day * 37 % 400; }, [](int day) { return day * 53 % 300; }));
    const QImage image = drawnOnCard(chart, GetParam().scale);
    // Across the bars, between two grid lines: only the three plain colours.
    const int y = static_cast<int>(170 * GetParam().scale);
    const int right = static_cast<int>(320 * GetParam().scale);
    std::set<QRgb> colors;
    for (int x = 0; x < right; ++x)
        colors.insert(image.pixel(x, y));
    EXPECT_THAT(colors, testing::IsSubsetOf({Theme::surface().rgb(), Theme::claude().rgb(), Theme::codex().rgb()}));
    EXPECT_THAT(colors, testing::Contains(Theme::claude().rgb()));
}

INSTANTIATE_TEST_SUITE_P(RangesAndScales, EveryRange,
                         testing::Values(Crispness{7, 1}, Crispness{30, 1}, Crispness{180, 1}, Crispness{7, 1.25},
                                         Crispness{30, 1.25}, Crispness{180, 1.25}, Crispness{7, 2}, Crispness{30, 2},
                                         Crispness{180, 2}));

TEST(StackedBarChart, barsOfAMonthAreEquallyWideWithGaps)
{
    StackedBarChart chart;
    chart.resize(370, StackedBarChart::totalHeight);
    chart.setData(dataOf(
        30, [](int) { return 10; }, none));
    const QImage image = drawnOnCard(chart);
    std::vector<int> widths;
    int width = 0;
    for (int x = 0; x < 370; ++x) {
        if (image.pixel(x, 150) == Theme::claude().rgb())
            ++width;
        else if (width > 0)
            widths.push_back(std::exchange(width, 0));
    }
    EXPECT_EQ(widths.size(), 30U);
    EXPECT_THAT(widths, testing::Each(widths.front()));
}

TEST(ChartHelp, tooltipListsEachSeriesOfTheDay)
{
    StackedBarChart chart;
    chart.resize(370, StackedBarChart::totalHeight);
    chart.setData(dataOf(
        7, [](int day) { return day == 0 ? 1'260'000 : 0; }, [](int) { return 999; }));
    chart.show();
    EXPECT_EQ(tooltipAt(chart, {10, 100}), QStringLiteral("Nov 15, 2026\nClaude: 1.3M\nCodex: 999"));
}

TEST(ChartHelp, emptyChartHasNoTooltip)
{
    LineChart chart;
    chart.show();
    tooltipAt(chart, {10, 10});
    EXPECT_FALSE(QToolTip::isVisible());
}

TEST(ChartAccessibility, seriesAndDaysAreExposedWithNumbers)
{
    installAccessibleElements();
    StackedBarChart chart;
    chart.resize(370, StackedBarChart::totalHeight);
    chart.setAccessibleName(QStringLiteral("Token Dashboard"));
    chart.setData(dataOf(
        2, [](int day) { return 1'000 * day; }, [](int) { return 7; }));
    EXPECT_EQ(accessibleRole(chart), QAccessible::Chart);
    EXPECT_EQ(accessibleName(chart), QStringLiteral("Token Dashboard"));
    QAccessibleInterface* root = QAccessible::queryAccessibleInterface(&chart);
    ASSERT_EQ(root->childCount(), 2);
    QAccessibleInterface* codex = root->child(1);
    EXPECT_EQ(codex->role(), QAccessible::List);
    EXPECT_EQ(codex->text(QAccessible::Name), QStringLiteral("Codex: 14"));
    EXPECT_EQ(codex->text(QAccessible::Value), QStringLiteral("14"));
    ASSERT_EQ(codex->childCount(), 2);
    EXPECT_EQ(root->child(0)->child(1)->text(QAccessible::Name), QStringLiteral("Nov 21, 2026: 1.0K"));
    EXPECT_EQ(root->child(0)->child(1)->text(QAccessible::Value), QStringLiteral("1.0K"));
    EXPECT_EQ(root->child(0)->child(1)->role(), QAccessible::ListItem);
}

TEST(ChartAccessibility, valueIsFoundWhereItIsDrawn)
{
    installAccessibleElements();
    StackedBarChart chart;
    chart.resize(370, StackedBarChart::totalHeight);
    chart.setData(dataOf(
        1, [](int) { return 5; }, [](int) { return 5; }));
    QAccessibleInterface* root = QAccessible::queryAccessibleInterface(&chart);
    const QPoint lower = chart.mapToGlobal(QPoint{150, 150});
    const QPoint upper = chart.mapToGlobal(QPoint{150, 50});
    EXPECT_EQ(root->childAt(lower.x(), lower.y())->parent()->text(QAccessible::Name), QStringLiteral("Claude: 5"));
    EXPECT_EQ(root->childAt(upper.x(), upper.y())->parent()->text(QAccessible::Name), QStringLiteral("Codex: 5"));
}

TEST(ChartAccessibility, interfacesSurviveEqualDataOnly)
{
    installAccessibleElements();
    LineChart chart;
    chart.setData(dataOf(30, none, none));
    const QAccessible::Id series = QAccessible::uniqueId(QAccessible::queryAccessibleInterface(&chart)->child(0));
    chart.setData(dataOf(30, none, none));
    EXPECT_NE(QAccessible::accessibleInterface(series), nullptr);
    chart.setData(dataOf(7, none, none));
    EXPECT_EQ(QAccessible::accessibleInterface(series), nullptr);
}

TEST(AxisScale, stepIsTheSmallestRoundNumberThatFits)
{
    EXPECT_EQ(axisScale(5, 5), (AxisScale{1, 5}));
    EXPECT_EQ(axisScale(6, 5), (AxisScale{2, 3}));
    EXPECT_EQ(axisScale(12, 5), (AxisScale{5, 3}));
    EXPECT_EQ(axisScale(101, 5), (AxisScale{25, 5}));
    EXPECT_EQ(axisScale(126, 5), (AxisScale{50, 3}));
    EXPECT_EQ(axisScale(2'400'000, 5), (AxisScale{500'000, 5}));
    EXPECT_EQ(axisScale(999'999'999'999, 5), (AxisScale{200'000'000'000, 5}));
}

TEST(AxisScale, zeroStillHasAnAxis)
{
    EXPECT_EQ(axisScale(0, 5), (AxisScale{1, 1}));
    EXPECT_EQ(axisScale(-3, 5), (AxisScale{1, 1}));
}

TEST(AxisScale, everySizeIsReachedInRoundSteps)
{
    for (std::int64_t size = 1; size < std::numeric_limits<std::int64_t>::max() / 3; size = size * 3 - size / 2) {
        const AxisScale scale = axisScale(size, 5);
        EXPECT_LE(scale.steps, 5U);
        EXPECT_GE(scale.top(), static_cast<std::uint64_t>(size));
        std::uint64_t digits = scale.step;
        while (digits % 10 == 0)
            digits /= 10;
        EXPECT_THAT(digits, testing::AnyOf(1U, 2U, 5U, 25U));
    }
}

TEST(AxisScale, largestIntegerIsReached)
{
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(axisScale(largest, 5), (AxisScale{2'000'000'000'000'000'000U, 5}));
    EXPECT_EQ(axisScale(largest, 1), (AxisScale{10'000'000'000'000'000'000U, 1}));
}

TEST(AxisScale, marksBeginAtZeroAndEndAtTheTop)
{
    EXPECT_THAT((AxisScale{25, 3}.marks()), testing::ElementsAre(0U, 25U, 50U, 75U));
    EXPECT_EQ((AxisScale{25, 3}.top()), 75U);
}

TEST(AxisLabel, isExactAndShort)
{
    EXPECT_EQ(axisLabel(0), "0");
    EXPECT_EQ(axisLabel(750), "750");
    EXPECT_EQ(axisLabel(1'000), "1K");
    EXPECT_EQ(axisLabel(2'500), "2.5K");
    EXPECT_EQ(axisLabel(7'500'000), "7.5M");
    EXPECT_EQ(axisLabel(1'250'000), "1.25M");
    EXPECT_EQ(axisLabel(200'000'000'000), "200B");
    EXPECT_EQ(axisLabel(1'000'000'000'000), "1T");
    EXPECT_EQ(axisLabel(10'000'000'000'000'000'000U), "10000000T");
}

std::vector<QPointF> pointsAt(const std::vector<double>& heights)
{
    std::vector<QPointF> points;
    for (const double height : heights)
        points.emplace_back(12.5 * static_cast<double>(points.size()), height);
    return points;
}

/// Each piece of the path is the cubic between two neighbours, which has three elements.
QPointF onPiece(const QPainterPath& path, std::size_t piece, double t)
{
    const auto element = [&](std::size_t i) { return QPointF{path.elementAt(static_cast<int>(3 * piece + i))}; };
    const double s = 1 - t;
    return s * s * s * element(0) + 3 * s * s * t * element(1) + 3 * s * t * t * element(2) + t * t * t * element(3);
}

void expectThroughPointsAndBetweenNeighbours(const std::vector<QPointF>& points)
{
    const QPainterPath path = smoothCurve(points);
    ASSERT_EQ(path.elementCount(), static_cast<int>(3 * (points.size() - 1) + 1));
    for (std::size_t piece = 0; piece + 1 < points.size(); ++piece) {
        EXPECT_EQ(onPiece(path, piece, 0), points[piece]);
        EXPECT_EQ(onPiece(path, piece, 1), points[piece + 1]);
        const auto [low, high] = std::minmax({points[piece].y(), points[piece + 1].y()});
        for (double t = 0; t <= 1; t += 0.01) {
            EXPECT_GE(onPiece(path, piece, t).y(), low - 1e-9);
            EXPECT_LE(onPiece(path, piece, t).y(), high + 1e-9);
        }
    }
}

TEST(SmoothCurve, spikeStaysBetweenItsNeighbours)
{
    expectThroughPointsAndBetweenNeighbours(pointsAt({0, 0, 0, 100, 0, 0}));
}

TEST(SmoothCurve, curvePassesThroughAllPointsWithinTheirRange)
{
    std::mt19937 random{20261121};
    std::uniform_real_distribution<double> height{0, 1000};
    for (int round = 0; round < 50; ++round) {
        std::vector<double> heights(30);
        for (double& each : heights)
            each = height(random) < 300 ? 0 : height(random);
        expectThroughPointsAndBetweenNeighbours(pointsAt(heights));
    }
}

TEST(SmoothCurve, equalPointsGiveAStraightLine)
{
    const QPainterPath path = smoothCurve(pointsAt({7, 7, 7}));
    EXPECT_EQ(path.boundingRect().height(), 0);
}

TEST(SmoothCurve, slopeIsTheSameOnBothSidesOfAPoint)
{
    const QPainterPath path = smoothCurve(pointsAt({0, 10, 40, 50, 20}));
    for (int point = 1; point < 4; ++point) {
        const QPointF before = QPointF{path.elementAt(3 * point)} - QPointF{path.elementAt(3 * point - 1)};
        const QPointF after = QPointF{path.elementAt(3 * point + 1)} - QPointF{path.elementAt(3 * point)};
        EXPECT_NEAR(before.y() / before.x(), after.y() / after.x(), 1e-9);
    }
}

TEST(SmoothCurve, fewerThanTwoPointsGiveNoLine)
{
    EXPECT_TRUE(smoothCurve({}).isEmpty());
    EXPECT_EQ(smoothCurve(pointsAt({3})).elementCount(), 1);
}

} // namespace
} // namespace tallyfox::test
