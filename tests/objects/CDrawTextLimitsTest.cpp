#include "objects/CDrawText.h"

#include <gtest/gtest.h>

#include <climits>

// Straight text fits its box about the box's centre. A box from a damaged project may sit at the
// edge of the range; laid out it must stay whole, and laid out again (as on the next open) stay put.
TEST(CDrawTextLimits, StraightTextAtTheEdgeOfTheRangeKeepsItsBoxFromLayoutToLayout)
{
    const struct {
        const char* name;
        CRect position;
    } cases[] = {
        {"far right", CRect(1766654052, 58, 1226863215, -58)},
        {"far left and down", CRect(INT_MIN, INT_MIN + 100, INT_MIN + 10, INT_MIN)},
        {"near the middle", CRect(-300, 200, 300, -200)},
    };
    for (const auto& c : cases) {
        CDrawText text(c.position);
        text.m_text = QStringLiteral("Mix Nr. 7");
        text.Layout();
        const CRect first = text.m_position;
        EXPECT_GT(first.Width(), 0) << c.name;
        EXPECT_LT(first.Height(), 0) << c.name; // y up: top above bottom
        EXPECT_LE(first.right, INT_MAX / 2) << c.name;
        EXPECT_GE(first.left, -(INT_MAX / 2)) << c.name;
        text.Layout();
        EXPECT_EQ(text.m_position, first) << c.name;
        if (c.position.left == -300) { // inside the range the centre stays exactly where it was
            EXPECT_EQ(first.CenterPoint(), CPoint(0, 0));
        }
    }
    // A negative font size makes the box narrower than nothing: its left side is on the right.
    // At the edge of the range it too stays where it is.
    CDrawText flipped(CRect(INT_MAX / 2, INT_MAX / 2, INT_MAX / 2, 1016237621));
    flipped.m_text.clear();
    flipped.m_fontSize = -16777216;
    flipped.Layout();
    const CRect first = flipped.m_position;
    EXPECT_LT(first.Width(), 0);
    flipped.Layout();
    EXPECT_EQ(flipped.m_position, first);
}

// A curved text's box from a damaged file may span more than int holds; the text still runs
// along the top of its ellipse, as in a box of ordinary size (the path is in the box's frame).
TEST(CDrawTextLimits, CurvedTextInABoxWiderThanIntRunsAlongItsEllipse)
{
    for (int kind : {int(CDrawText::CurvedCW), int(CDrawText::SpiralCCW)}) {
        CDrawText text(CRect(-2000000000, 2000000000, 2000000000, -2000000000));
        text.m_text = QStringLiteral("Hello");
        text.m_textPathKind = kind;
        text.Layout();
        const QRectF bounds = text.m_textPath.GetBounds();
        EXPECT_NEAR(bounds.center().x(), 2e9, 2e7) << kind;
        EXPECT_GT(bounds.top(), 3.6e9) << kind;
        EXPECT_LT(bounds.bottom(), 4.1e9) << kind;
    }
}
