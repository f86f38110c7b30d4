#include "Canvas.h"

#include "objects/CDrawPoly.h"
#include "objects/CDrawRect.h"
#include "objects/CDrawText.h"

namespace {

using Canvas_Gestures = Canvas;

TEST_F(Canvas_Gestures, EachRectangleToolDrawsItsShapeByDraggingAndStaysCurrent)
{
    const struct {
        int tool;
        int shape;
    } tools[] = {
        {CDrawTool::Rectangle, CDrawRect::Rectangle},
        {CDrawTool::RoundRectangle, CDrawRect::RoundRectangle},
        {CDrawTool::Ellipse, CDrawRect::Ellipse | CDrawRect::AspectLock},
        {CDrawTool::Arc, CDrawRect::Arc | CDrawRect::AspectLock},
        {CDrawTool::Halo, CDrawRect::Halo | CDrawRect::AspectLock},
        {CDrawTool::Line, CDrawRect::Line},
        {CDrawTool::Arrow, CDrawRect::ArrowLine},
    };
    for (const auto& t : tools) {
        tool(t.tool);
        const int before = objects().GetCount();
        drag(at(-300, 300), at(-100, 100));
        ASSERT_EQ(objects().GetCount(), before + 1) << t.tool;
        auto* made = dynamic_cast<CDrawRect*>(object(before));
        ASSERT_NE(made, nullptr);
        EXPECT_EQ(made->m_shape, t.shape);
        EXPECT_EQ(view->m_selection, CDrawObjPtrList{made});
        EXPECT_EQ(g_currentTool, t.tool) << "a drawing tool stays for the next object";
        if (!(t.shape & CDrawRect::AspectLock)) {
            // From the press to the release, to the nearest pixel of the screen.
            const CRect r = made->GetRect();
            EXPECT_NEAR(r.left, -300, 3);
            EXPECT_NEAR(r.top, 300, 3);
            EXPECT_NEAR(r.right, -100, 3);
            EXPECT_NEAR(r.bottom, 100, 3);
        } else {
            EXPECT_EQ(made->GetRect().Width(), -made->GetRect().Height()) << "starts as a circle";
        }
    }
}

TEST_F(Canvas_Gestures, ARectangleNeedsFivePixelsOfDragBeforeItIsMade)
{
    tool(CDrawTool::Rectangle);
    const QPoint start = at(0, 0);
    press(start);
    move(start + QPoint(4, 4));
    release(start + QPoint(4, 4));
    EXPECT_TRUE(objects().IsEmpty());
    EXPECT_EQ(g_currentTool, CDrawTool::Rectangle) << "released away from the press point";

    press(start);
    move(start + QPoint(5, 0));
    release(start + QPoint(5, 0));
    EXPECT_EQ(objects().GetCount(), 1);

    // A click without any movement makes nothing and returns to the selection tool.
    click(at(200, 200));
    EXPECT_EQ(objects().GetCount(), 1);
    EXPECT_EQ(g_currentTool, CDrawTool::Selection);
}

TEST_F(Canvas_Gestures, PolyToolsLayVerticesByClicksAndDragsAndEndByTheirRules)
{
    // Polygon: three clicks and a double-click, whose vertex is dropped again.
    tool(CDrawTool::Polygon);
    for (const QPoint p : {at(0, 0), at(200, 0), at(200, 200), at(0, 200)})
        click(p);
    QTest::mouseDClick(canvas(), Qt::LeftButton, {}, at(0, 200));
    ASSERT_EQ(objects().GetCount(), 1);
    auto* polygon = dynamic_cast<CDrawPoly*>(object(0));
    ASSERT_NE(polygon, nullptr);
    EXPECT_EQ(polygon->m_polyKind, CDrawPoly::Polygon);
    EXPECT_EQ(polygon->GetPointCount(), 3);
    EXPECT_EQ(g_currentTool, CDrawTool::Selection);

    // Curve: a right click after two points ends it as it stands.
    tool(CDrawTool::Curve);
    click(at(-300, -300));
    click(at(-100, -300));
    QTest::mousePress(canvas(), Qt::RightButton, {}, at(-100, -300));
    ASSERT_EQ(objects().GetCount(), 2);
    EXPECT_EQ(static_cast<CDrawPoly*>(object(1))->GetPointCount(), 2);
    EXPECT_EQ(g_currentTool, CDrawTool::Selection);

    // Polyline: a drag lays a vertex whenever it is more than 20 units from the last one.
    tool(CDrawTool::Polyline);
    press(at(-400, 0));
    move(at(-390, 0)); // under 20 units: none
    move(at(-370, 0)); // 30: one
    move(at(-300, 0)); // 70: one
    release(at(-300, 0));
    QTest::mousePress(canvas(), Qt::RightButton, {}, at(-300, 0));
    auto* line = static_cast<CDrawPoly*>(object(2));
    EXPECT_EQ(line->m_polyKind, CDrawPoly::Polyline);
    EXPECT_EQ(line->GetPointCount(), 3);

    // A polygon's right click does nothing before the third vertex, and the gesture survives
    // a change of tool.
    tool(CDrawTool::Polygon);
    click(at(300, 300));
    click(at(400, 300));
    QTest::mousePress(canvas(), Qt::RightButton, {}, at(400, 300));
    EXPECT_EQ(g_currentTool, CDrawTool::Polygon);
    tool(CDrawTool::Polygon);
    click(at(400, 400));
    QTest::mousePress(canvas(), Qt::RightButton, {}, at(400, 400));
    EXPECT_EQ(static_cast<CDrawPoly*>(object(3))->GetPointCount(), 3);
    EXPECT_EQ(g_currentTool, CDrawTool::Selection);
}

TEST_F(Canvas_Gestures, TextByAClickAndCtrlKeepsTheTool)
{
    tool(CDrawTool::Text);
    click(at(100, -200));
    ASSERT_EQ(objects().GetCount(), 1);
    auto* text = dynamic_cast<CDrawText*>(object(0));
    ASSERT_NE(text, nullptr);
    EXPECT_NEAR(text->GetRect().left, 100, 3);
    EXPECT_EQ(g_currentTool, CDrawTool::Selection);

    tool(CDrawTool::Text);
    click(at(0, 0), Qt::ControlModifier);
    EXPECT_EQ(g_currentTool, CDrawTool::Text);

    // A curved text goes round the whole disc wherever the click falls.
    g_defaultProperties.m_textPathKind = 1;
    click(at(300, 100));
    const int half = int(doc->GetOuterDia() * 300 / 2);
    EXPECT_EQ(object(2)->GetRect(), CRect(-half, half, half, -half));
}

TEST_F(Canvas_Gestures, SelectMoveResizeNudgeAndRubberBand)
{
    tool(CDrawTool::Rectangle);
    drag(at(-300, 300), at(-100, 100));
    drag(at(100, -100), at(300, -300));
    CDrawObj* first = object(0);
    CDrawObj* second = object(1);
    g_currentTool = CDrawTool::Selection;

    // A click on empty space clears the selection; a click selects, Shift-click adds.
    click(at(0, 500));
    EXPECT_TRUE(view->m_selection.empty());
    click(at(-200, 200));
    EXPECT_EQ(view->m_selection, CDrawObjPtrList{first});
    click(at(200, -200), Qt::ShiftModifier);
    EXPECT_EQ(view->m_selection, (CDrawObjPtrList{first, second}));
    // A Shift double-click takes one out again.
    QTest::mouseDClick(canvas(), Qt::LeftButton, Qt::ShiftModifier, at(-200, 200));
    EXPECT_EQ(view->m_selection, CDrawObjPtrList{second});

    // Moving by a drag, by whole label units of the screen's pixels.
    const CRect before = second->GetRect();
    drag(at(200, -200), at(250, -150));
    const CRect moved = second->GetRect();
    EXPECT_NEAR(moved.left - before.left, 50, 3);
    EXPECT_NEAR(moved.top - before.top, 50, 3);
    EXPECT_EQ(moved.Width(), before.Width());

    // Resizing by the lower right handle.
    drag(at(moved.right, moved.bottom), at(moved.right + 100, moved.bottom - 100));
    EXPECT_NEAR(second->GetRect().right, moved.right + 100, 3);
    EXPECT_NEAR(second->GetRect().bottom, moved.bottom - 100, 3);
    EXPECT_EQ(second->GetRect().left, moved.left);

    // One unit for each press of an arrow key, however many come.
    const CRect nudged = second->GetRect();
    key(Qt::Key_Left);
    key(Qt::Key_Left);
    key(Qt::Key_Up);
    EXPECT_EQ(second->GetRect().left, nudged.left - 2);
    EXPECT_EQ(second->GetRect().top, nudged.top + 1);
    key(Qt::Key_Right, Qt::ControlModifier); // Ctrl with an arrow does nothing
    EXPECT_EQ(second->GetRect().left, nudged.left - 2);

    // A rubber band round both selects both; one that catches nothing selects nothing.
    drag(at(-600, 600), at(600, -600));
    EXPECT_EQ(view->m_selection, (CDrawObjPtrList{first, second}));
    drag(at(-600, 600), at(-550, 550));
    EXPECT_TRUE(view->m_selection.empty());
}

TEST_F(Canvas_Gestures, ZoomStepsAroundAPointAndComesBackToTheFit)
{
    const CSize full = view->GetTotalDeviceSize();
    // The fit with its margin of one per cent, on the narrower side.
    EXPECT_EQ(full.cy, int(600 * 0.99));

    view->OnZoomTool(CZoomView::ZoomInMode);
    click(at(0, 0));
    click(at(0, 0));
    click(at(300, 300));
    EXPECT_DOUBLE_EQ(view->GetZoom(), 0.99 * 1.25 * 1.25 * 1.25);
    // The clicked point is now in the middle of the window.
    const CPoint middle = view->GetLogicalCenter();
    EXPECT_NEAR(middle.x, 300, 3);
    EXPECT_NEAR(middle.y, 300, 3);
    EXPECT_EQ(g_currentTool, CDrawTool::Zoom) << "the zoom tool stays for the next click";

    for (int i = 0; i < 200; ++i)
        view->ZoomIn(nullptr, 1.25);
    EXPECT_LT(view->GetTotalDeviceSize().cx, 1 << 30) << "steps that would overflow are refused";
    EXPECT_GT(view->GetTotalDeviceSize().cx, 1 << 29);
    view->repaint();
    for (int i = 0; i < 400; ++i)
        view->ZoomOut(nullptr, 1.25);
    EXPECT_GE(view->GetTotalDeviceSize().cx, 1);
    view->repaint();

    view->ZoomFull();
    EXPECT_EQ(view->GetZoom(), 0.99);
    EXPECT_EQ(view->GetTotalDeviceSize(), full);
}

} // namespace

namespace {

TEST_F(Canvas_Gestures, WildInputEndsSafely)
{
    // A drag that leaves the window far behind, and a second press in the middle of a drag.
    tool(CDrawTool::Rectangle);
    press(at(0, 0));
    move(at(50, 50));
    move(QPoint(-100000, 100000));
    QTest::mousePress(canvas(), Qt::LeftButton, {}, at(100, 100));
    release(QPoint(-100000, 100000));
    ASSERT_EQ(objects().GetCount(), 1);
    canvas()->repaint();

    // Ten thousand objects: selected by a band, deleted and brought back in one step each.
    for (int i = 0; i < 10000; ++i)
        doc->Add(std::make_unique<CDrawRect>(CRect(-500 + i % 100 * 10, 500 - i / 100 * 10, -495 + i % 100 * 10, 495 - i / 100 * 10)));
    g_currentTool = CDrawTool::Selection;
    drag(at(-700, 700), at(700, -700));
    EXPECT_EQ(view->m_selection.size(), 10000u);
    view->OnEditDelete();
    EXPECT_EQ(objects().GetCount(), 1);
    undo();
    EXPECT_EQ(objects().GetCount(), 10001);
    canvas()->repaint();
}

} // namespace
