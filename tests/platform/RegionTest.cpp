#include "platform/graphics/Region.h"

#include <gtest/gtest.h>

using namespace gfx;

TEST(Region, DefaultIsInfiniteUntilIntersectedAndTransformsMoveFiniteRegionsOnly)
{
    Region region;
    EXPECT_TRUE(region.IsInfinite());
    EXPECT_FALSE(region.IsEmpty());
    EXPECT_TRUE(region.IsVisible(QPointF(-1e6, 1e6)));
    EXPECT_TRUE(region.GetBounds().contains(QRectF(-1e6, -1e6, 2e6, 2e6)));
    region.Transform(Matrix(0.001f, 0, 0, 0.001f, 0, 0));
    EXPECT_TRUE(region.IsInfinite());

    region.Intersect(Region(QRectF(0, 0, 20, 20)));
    region.Intersect(Region(QRectF(10, 10, 20, 20)));
    EXPECT_FALSE(region.IsInfinite());
    region.Transform(Matrix(1, 0, 0, -1, 100, 50));
    EXPECT_EQ(region.GetBounds(), QRectF(110, 30, 10, 10));
    EXPECT_TRUE(region.IsVisible(QPointF(115, 35)));
    EXPECT_FALSE(region.IsVisible(QPointF(105, 35)));
    region.Intersect(Region(QRectF(0, 0, 5, 5)));
    EXPECT_TRUE(region.IsEmpty());
    EXPECT_TRUE(region.GetBounds().isEmpty());
}

TEST(Region, ExcludeCutsHolesAndExcludingEverythingLeavesNothing)
{
    // The screen's mask: a square with the disc cut out of it.
    Region mask(QRectF(-100, -100, 200, 200));
    GraphicsPath disc;
    disc.AddEllipse(QRectF(-50, -50, 100, 100));
    mask.Exclude(disc);
    for (const auto& [point, in] :
         {std::pair(QPointF(0, 0), false), {{40, 0}, false}, {{60, 0}, true}, {{-90, -90}, true}})
        EXPECT_EQ(mask.IsVisible(point), in) << point.x() << "," << point.y();
    EXPECT_EQ(mask.GetBounds(), QRectF(-100, -100, 200, 200));

    // A ring (ellipse with a hole, alternate fill) excluded from the infinite region.
    disc.AddEllipse(QRectF(-10, -10, 20, 20));
    Region outside;
    outside.Exclude(disc);
    EXPECT_TRUE(outside.IsVisible(QPointF(0, 0)));
    EXPECT_FALSE(outside.IsVisible(QPointF(30, 0)));
    EXPECT_TRUE(outside.IsVisible(QPointF(1000, 0)));

    mask.Exclude(Region());
    EXPECT_TRUE(mask.IsEmpty());
    EXPECT_FALSE(mask.IsInfinite());
}
