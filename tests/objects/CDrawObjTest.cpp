#include "ShapeCanvas.h"

#include "document/CDrawDoc.h"

#include <cmath>

TEST(DrawObj, NewObjectsTakeTheCurrentDefaultsAndTheirAspect)
{
    ResetDefaultProperties();
    EXPECT_EQ(CDrawObj(CRect(0, 200, 400, 0)).m_aspect, 2.0);
    EXPECT_TRUE(std::isinf(CDrawObj(CRect(0, 5, 10, 5)).m_aspect));
    g_defaultProperties.m_lineWidth = 9;
    EXPECT_EQ(CDrawObj().m_lineWidth, 9);
    ResetDefaultProperties();
}

TEST(DrawObj, HandlesGoClockwiseAndAreHitHighestFirst)
{
    const CDrawObj object(CRect(0, 100, 201, 0));
    const CPoint expected[] = {{0, 100}, {100, 100}, {201, 100}, {201, 50}, {201, 0}, {100, 0}, {0, 0}, {0, 50}};
    for (int handle = 1; handle <= 8; ++handle)
        EXPECT_EQ(object.GetHandle(handle), expected[handle - 1]) << handle;
    EXPECT_EQ(object.GetHandleRect(3, nullptr), CRect(189, 88, 213, 112));
    EXPECT_EQ(object.GetHandleCursor(7), Qt::SizeBDiagCursor);

    // Unselected: the stored rectangle, edges included; drawn y-up it never hits.
    CDrawObj normal(CRect(0, 0, 100, 100)), upward(CRect(0, 100, 100, 0)), tiny(CRect(0, 10, 10, 0));
    EXPECT_EQ(normal.HitTest(CPoint(100, 100), nullptr, false), 1);
    EXPECT_EQ(normal.HitTest(CPoint(101, 50), nullptr, false), 0);
    EXPECT_EQ(upward.HitTest(CPoint(50, 50), nullptr, false), 0);
    // Selected: the handle squares, highest number first where they overlap.
    EXPECT_EQ(tiny.HitTest(CPoint(0, 10), nullptr, true), 8);
    EXPECT_EQ(upward.HitTest(CPoint(112, 112), nullptr, true), 3);
    EXPECT_EQ(upward.HitTest(CPoint(50, 50), nullptr, true), 0);

    // Overlap and containment normalise both rectangles; touching edges do not overlap, and a
    // line without height counts as one unit high.
    EXPECT_TRUE(upward.Intersects(CRect(150, 150, 99, 99)));
    EXPECT_FALSE(upward.Intersects(CRect(100, 100, 200, 200)));
    EXPECT_TRUE(upward.IsInside(CRect(0, 0, 100, 100)));
    EXPECT_FALSE(upward.IsInside(CRect(1, 0, 100, 100)));
    CDrawObj flat(CRect(0, 20, 100, 20));
    EXPECT_TRUE(flat.IsInside(CRect(0, 20, 100, 21)));
    EXPECT_FALSE(flat.IsInside(CRect(0, 20, 100, 20)));
}

TEST(DrawObj, HandlesMoveTheirEdgesAndRepaint)
{
    CDrawDoc doc;
    CountingView view;
    doc.AddView(&view);
    CDrawObj* object = doc.Add(std::make_unique<CDrawObj>(CRect(0, 100, 100, 0)));
    object->MoveHandleTo(5, CPoint(300, -50), nullptr);
    EXPECT_EQ(object->m_position, CRect(0, 100, 300, -50));
    EXPECT_DOUBLE_EQ(object->m_aspect, 2.0);
    EXPECT_EQ(view.updates, 2); // the old place and the new one
    object->MoveHandleTo(42, CPoint(-10, 110), nullptr); // unknown handles act as the first
    EXPECT_EQ(object->m_position, CRect(-10, 110, 300, -50));
    object->MoveTo(object->m_position, &view); // no change, no repaint
    EXPECT_EQ(view.invalidations, 0);
    object->MoveHandleTo(2, CPoint(0, 120), &view); // a given view repaints on its own
    EXPECT_EQ(view.invalidations, 2);
    EXPECT_EQ(view.updates, 4);

    object->SetArrow(CDrawObj::EndArrowId, 17);
    EXPECT_EQ(object->m_endArrow, 17);
    object->SetArrow(1234, 99); // an unknown command changes nothing, still repaints
    EXPECT_EQ(view.updates, 6);
    EXPECT_EQ(object->GetArrow(1234), 16);
    // The draw bounds hold the line and the larger arrow head.
    object->m_lineWidth = 3;
    object->m_startArrowSize = 2;
    object->m_endArrowSize = 4;
    EXPECT_EQ(object->GetDrawBounds(CRect(0, 0, 100, 100)), CRect(-26, -26, 126, 126));
}

TEST(DrawObj, CloneLeavesTheDocumentAndCopyPropertiesThePlace)
{
    CDrawDoc doc;
    CDrawObj* original = doc.Add(std::make_unique<CDrawObj>(CRect(1, 2, 3, 4)));
    original->m_lineColor1 = gfx::Color(255, 10, 20, 30);
    original->m_lineReserved = 77;
    const std::unique_ptr<CDrawObj> clone = original->Clone();
    EXPECT_EQ(stored(*clone), stored(*original));
    EXPECT_EQ(clone->m_pDocument, nullptr);
    CDrawObj target(CRect(9, 9, 19, 19));
    target.CopyProperties(*original);
    EXPECT_EQ(target.m_position, CRect(9, 9, 19, 19));
    target.m_position = original->m_position;
    EXPECT_EQ(stored(target), stored(*original));
}
