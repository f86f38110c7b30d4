#include "platform/graphics/Region.h"

#include <gtest/gtest.h>

using namespace gfx;

TEST(Region, DefaultIsInfiniteUntilCombined)
{
    Region region;
    EXPECT_TRUE(region.IsInfinite());
    EXPECT_FALSE(region.IsEmpty());
    EXPECT_TRUE(region.IsVisible(QPointF(-1e6, 1e6)));
    EXPECT_TRUE(region.GetBounds().contains(QRectF(-1e6, -1e6, 2e6, 2e6)));

    region.Intersect(Region(QRectF(10, 10, 20, 20)));
    EXPECT_FALSE(region.IsInfinite());
    EXPECT_EQ(region.GetBounds(), QRectF(10, 10, 20, 20));

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
    EXPECT_FALSE(mask.IsVisible(QPointF(0, 0)));
    EXPECT_FALSE(mask.IsVisible(QPointF(40, 0)));
    EXPECT_TRUE(mask.IsVisible(QPointF(60, 0)));
    EXPECT_TRUE(mask.IsVisible(QPointF(-90, -90)));
    EXPECT_EQ(mask.GetBounds(), QRectF(-100, -100, 200, 200));

    // A ring (ellipse with a hole, alternate fill) excluded from the infinite region.
    GraphicsPath ring;
    ring.AddEllipse(QRectF(-50, -50, 100, 100));
    ring.AddEllipse(QRectF(-10, -10, 20, 20));
    Region outside;
    outside.Exclude(ring);
    EXPECT_TRUE(outside.IsVisible(QPointF(0, 0)));
    EXPECT_FALSE(outside.IsVisible(QPointF(30, 0)));
    EXPECT_TRUE(outside.IsVisible(QPointF(1000, 0)));

    mask.Exclude(Region());
    EXPECT_TRUE(mask.IsEmpty());
    EXPECT_FALSE(mask.IsInfinite());
    EXPECT_FALSE(mask.IsVisible(QPointF(90, 90)));
}

TEST(Region, SetOperationsOnTwoSquares)
{
    const Region a(QRectF(0, 0, 20, 20));
    const Region b(QRectF(10, 10, 20, 20));
    const QPointF onlyA(5, 5), both(15, 15), onlyB(25, 25), neither(25, 5);

    Region u = a;
    u.Union(b);
    EXPECT_TRUE(u.IsVisible(onlyA) && u.IsVisible(both) && u.IsVisible(onlyB));
    EXPECT_FALSE(u.IsVisible(neither));

    Region x = a;
    x.Xor(b);
    EXPECT_TRUE(x.IsVisible(onlyA) && x.IsVisible(onlyB));
    EXPECT_FALSE(x.IsVisible(both));

    Region c = a;
    c.Complement(b);
    EXPECT_TRUE(c.IsVisible(onlyB));
    EXPECT_FALSE(c.IsVisible(both) || c.IsVisible(onlyA));

    Region i = a;
    i.Intersect(b);
    EXPECT_EQ(i.GetBounds(), QRectF(10, 10, 10, 10));
    i.Intersect(Region(QRectF(100, 100, 5, 5)));
    EXPECT_TRUE(i.IsEmpty());
    EXPECT_TRUE(i.GetBounds().isEmpty());
}

TEST(Region, TransformMovesAFiniteRegionOnly)
{
    Region region(QRectF(0, 0, 10, 10));
    region.Transform(Matrix(1, 0, 0, -1, 100, 50));
    EXPECT_EQ(region.GetBounds(), QRectF(100, 40, 10, 10));
    EXPECT_TRUE(region.IsVisible(QPointF(105, 45)));

    Region infinite;
    infinite.Transform(Matrix(0.001f, 0, 0, 0.001f, 0, 0));
    EXPECT_TRUE(infinite.IsInfinite());
}
