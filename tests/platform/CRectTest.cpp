#include "platform/CRect.h"

#include <gtest/gtest.h>

#include <climits>

TEST(CRect, FarCornersNeitherOverflowTheCentreNorTheExtent)
{
    // Coordinates straight from a damaged project: the sum leaves int, the centre doesn't.
    EXPECT_EQ(CRect(1766654052, 10, 1226863215, -10).CenterPoint(), CPoint(1496758633, 0));
    EXPECT_EQ(CRect(INT_MAX, INT_MIN, INT_MAX, INT_MIN).CenterPoint(), CPoint(INT_MAX, INT_MIN));
    EXPECT_EQ(CRect(INT_MIN, INT_MAX, INT_MAX, INT_MIN).CenterPoint(), CPoint(0, 0));
    // Halves truncate towards zero either side of it, as they always did.
    EXPECT_EQ(CRect(-3, 3, 0, 0).CenterPoint(), CPoint(-1, 1));
    EXPECT_EQ(CRect(-300, 200, 300, -200).CenterPoint(), CPoint(0, 0));
    // Extents stop at the ends of the range instead of wrapping round to the other sign.
    EXPECT_EQ(CRect(INT_MIN, INT_MAX, INT_MAX, INT_MIN).Width(), INT_MAX);
    EXPECT_EQ(CRect(INT_MIN, INT_MAX, INT_MAX, INT_MIN).Height(), INT_MIN);
    EXPECT_FALSE(CRect(-2000000000, -2000000000, 2000000000, 2000000000).IsRectEmpty());
    EXPECT_EQ(CRect(-3, 5, 4, -2).Width(), 7);
}
