#include "Tallyfox/Agent/Charts/SmoothCurve.h"

#include <gtest/gtest.h>

#include <random>

namespace tallyfox::test {
namespace {

std::vector<QPointF> pointsAt(const std::vector<double>& heights)
{
    std::vector<QPointF> points;
    for (const double height : heights)
        points.emplace_back(12.5 * static_cast<double>(points.size()), height);
    return points;
}

/// Each piece of the path is the cubic between two neighbours: three elements after the first.
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

TEST(SmoothCurve, anyPointsAreMetAndNothingLeavesTheirRange)
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

TEST(SmoothCurve, flatStretchesAreFlat)
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

TEST(SmoothCurve, fewerThanTwoPointsAreNoLine)
{
    EXPECT_TRUE(smoothCurve({}).isEmpty());
    EXPECT_EQ(smoothCurve(pointsAt({3})).elementCount(), 1);
}

} // namespace
} // namespace tallyfox::test
