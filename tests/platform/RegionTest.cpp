#include "platform/graphics/Region.h"

#include <gtest/gtest.h>

using namespace gfx;

namespace {

// Which of the points lie in the region, as a string of 0s and 1s.
std::string inside(const Region& region, std::initializer_list<QPointF> points)
{
    std::string result;
    for (const QPointF& p : points)
        result += region.IsVisible(p) ? '1' : '0';
    return result;
}

} // namespace

TEST(Region, DefaultIsInfiniteUntilCombinedAndTransformsMoveFiniteRegionsOnly)
{
    Region region;
    EXPECT_TRUE(region.IsInfinite());
    EXPECT_FALSE(region.IsEmpty());
    EXPECT_TRUE(region.IsVisible(QPointF(-1e6, 1e6)));
    EXPECT_TRUE(region.GetBounds().contains(QRectF(-1e6, -1e6, 2e6, 2e6)));
    region.Transform(Matrix(0.001f, 0, 0, 0.001f, 0, 0));
    EXPECT_TRUE(region.IsInfinite());

    region.Intersect(Region(QRectF(0, 0, 10, 10)));
    EXPECT_FALSE(region.IsInfinite());
    region.Transform(Matrix(1, 0, 0, -1, 100, 50));
    EXPECT_EQ(region.GetBounds(), QRectF(100, 40, 10, 10));
    EXPECT_TRUE(region.IsVisible(QPointF(105, 45)));

    Region all;
    all.Union(region);
    EXPECT_TRUE(all.IsInfinite());
    region.Union(Region());
    EXPECT_TRUE(region.IsInfinite());
}

TEST(Region, ExcludeCutsHolesAndExcludingEverythingLeavesNothing)
{
    // The screen's mask: a square with the disc cut out of it.
    Region mask(QRectF(-100, -100, 200, 200));
    GraphicsPath disc;
    disc.AddEllipse(QRectF(-50, -50, 100, 100));
    mask.Exclude(disc);
    EXPECT_EQ(inside(mask, {{0, 0}, {40, 0}, {60, 0}, {-90, -90}}), "0011");
    EXPECT_EQ(mask.GetBounds(), QRectF(-100, -100, 200, 200));

    // A ring (ellipse with a hole, alternate fill) excluded from the infinite region.
    disc.AddEllipse(QRectF(-10, -10, 20, 20));
    Region outside;
    outside.Exclude(disc);
    EXPECT_EQ(inside(outside, {{0, 0}, {30, 0}, {1000, 0}}), "101");

    mask.Exclude(Region());
    EXPECT_TRUE(mask.IsEmpty());
    EXPECT_FALSE(mask.IsInfinite());
    EXPECT_FALSE(mask.IsVisible(QPointF(90, 90)));
}

TEST(Region, SetOperationsOnTwoSquares)
{
    const Region a(QRectF(0, 0, 20, 20));
    const Region b(QRectF(10, 10, 20, 20));
    const auto combined = [&](void (Region::*operation)(const Region&)) {
        Region r = a;
        (r.*operation)(b);
        return inside(r, {{5, 5}, {15, 15}, {25, 25}, {25, 5}}); // only a, both, only b, neither
    };
    EXPECT_EQ(combined(&Region::Union), "1110");
    EXPECT_EQ(combined(&Region::Xor), "1010");
    EXPECT_EQ(combined(&Region::Complement), "0010");
    EXPECT_EQ(combined(&Region::Intersect), "0100");

    Region i = a;
    i.Intersect(b);
    EXPECT_EQ(i.GetBounds(), QRectF(10, 10, 10, 10));
    i.Intersect(Region(QRectF(100, 100, 5, 5)));
    EXPECT_TRUE(i.IsEmpty());
    EXPECT_TRUE(i.GetBounds().isEmpty());
}
