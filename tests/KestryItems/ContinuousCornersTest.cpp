#include "ContinuousCorners.h"

#include <gtest/gtest.h>

#include <cmath>

namespace Kestry {
namespace {

const QRectF square(10, 20, 100, 100);
constexpr double radius = 30;

TEST(ContinuousCornersTest, TheShapeTouchesAllEdges)
{
    EXPECT_EQ(square, continuousCorners(square, radius).boundingRect());
}

TEST(ContinuousCornersTest, AtTheDiagonalACornerIsAsFarAsACircle)
{
    const double inset = radius * (1 - std::sqrt(0.5));
    const QPainterPath path = continuousCorners(square, radius);
    for (const double away : {-0.3, 0.3}) {
        const QPointF point = square.topLeft() + QPointF(inset + away, inset + away);
        EXPECT_EQ(away > 0, path.contains(point)) << away;
    }
}

TEST(ContinuousCornersTest, ACornerBeginsBeforeACircularOne)
{
    // On the edge, where the circular corner has not begun.
    const QPointF point = square.topLeft() + QPointF(1.1 * radius, 0.05);
    EXPECT_FALSE(continuousCorners(square, radius).contains(point));
}

TEST(ContinuousCornersTest, AllCornersAreAlike)
{
    const QPainterPath path = continuousCorners(square, radius);
    const QPointF middle = square.center();
    for (const QPointF corner : {QPointF(-1, -1), QPointF(1, -1), QPointF(-1, 1), QPointF(1, 1)}) {
        EXPECT_FALSE(path.contains(middle + 42 * corner));
        EXPECT_TRUE(path.contains(middle + 40 * corner));
    }
}

TEST(ContinuousCornersTest, ARadiusThatIsTooLargeIsTakenAsTheLargest)
{
    EXPECT_EQ(continuousCorners(square, 100.0 / 3), continuousCorners(square, 80));
}

} // namespace
} // namespace Kestry
