#include "view/CPolyTool.h"

#include "objects/CDrawPoly.h"
#include "undo/CAddAction.h"
#include "view/CNetworkView.h"
#include "view/CSelectTool.h"

#include <cmath>

CPolyTool::CPolyTool() : CPolyTool(Polygon, CDrawPoly::Polygon, Ending::A, Ending::AllVertices) {}

CPolyTool::CPolyTool(int drawShape, std::uint8_t polyKind, Ending doubleClick, Ending rightClick)
    : CDrawTool(drawShape), m_polyKind(polyKind), m_doubleClick(doubleClick), m_rightClick(rightClick)
{
}

void CPolyTool::OnLButtonDown(CNetworkView* view, unsigned flags, CPoint point)
{
    CDrawTool::OnLButtonDown(view, flags, point);
    CPoint logical = point;
    view->ClientToDoc(logical);
    if (!m_pDrawObj) {
        view->SetCapture();
        auto object = std::make_unique<CDrawPoly>(CRect(logical.x, logical.y, logical.x, logical.y));
        object->m_polyKind = m_polyKind;
        m_pDrawObj = object.get();
        // Left open while the gesture lasts; the ending closes it.
        AddObject(view, std::move(object));
        m_pDrawObj->AddPoint(logical, view);
    } else {
        m_pDrawObj->AddPoint(logical, nullptr);
    }
    selectMode = None;
    FollowPoint(view, point, logical);
}

void CPolyTool::FollowPoint(CNetworkView* view, CPoint point, CPoint logical)
{
    nDragHandle = m_pDrawObj->GetHandleCount();
    lastPoint = logical;
    c_last = point;
    view->SetToolCursor(CNetworkView::PenCursor());
}

void CPolyTool::OnMouseMove(CNetworkView* view, unsigned flags, CPoint point)
{
    if (m_pDrawObj && (flags & MK_LBUTTON)) {
        CPoint logical = point;
        view->ClientToDoc(logical);
        const CPoint last = m_pDrawObj->GetPoint(m_pDrawObj->GetPointCount() - 1);
        const double dx = double(logical.x) - last.x;
        const double dy = double(logical.y) - last.y;
        if (std::sqrt(dx * dx + dy * dy) > VertexSpacing)
            m_pDrawObj->AddPoint(logical, nullptr);
        FollowPoint(view, point, logical);
        return;
    }
    view->SetToolCursor(Qt::CrossCursor);
    CSelectTool::Instance().OnMouseMove(view, flags, point);
}

void CPolyTool::OnLButtonDblClk(CNetworkView* view, unsigned, CPoint)
{
    EndBy(m_doubleClick, view);
}

void CPolyTool::OnRButtonDown(CNetworkView* view, unsigned, CPoint)
{
    EndBy(m_rightClick, view);
}

void CPolyTool::OnCancel()
{
    m_pDrawObj = nullptr;
    CDrawTool::OnCancel();
}

void CPolyTool::OnObjectRemoved(CNetworkView* view, CDrawObj* object)
{
    if (m_pDrawObj != object)
        return;
    m_pDrawObj = nullptr;
    view->ReleaseCapture();
}

void CPolyTool::DropLastVertex(CNetworkView* view)
{
    std::vector<CPoint> points = m_pDrawObj->GetPoints();
    points.resize(size_t(m_pDrawObj->GetPointCount() - 1));
    m_pDrawObj->SetPoints(std::move(points), m_pDrawObj->GetPointCapacity());
    view->InvalidateObject(m_pDrawObj);
}

void CPolyTool::EndBy(Ending ending, CNetworkView* view)
{
    if (ending == Ending::AllVertices) {
        if (m_pDrawObj && m_pDrawObj->GetPointCount() >= 3)
            End(view);
        return;
    }
    view->ReleaseCapture();
    // Without a gesture there is nothing to end.
    if (!m_pDrawObj)
        return;
    const int count = m_pDrawObj->GetPointCount();
    switch (ending) {
    case Ending::A:
        if (count < 3)
            return;
        if (count > 3)
            DropLastVertex(view);
        break;
    case Ending::B:
        if (count < 3)
            return;
        DropLastVertex(view);
        break;
    default:
        if (count > 2) {
            const CPoint last = m_pDrawObj->GetPoint(count - 1);
            const CPoint before = m_pDrawObj->GetPoint(count - 2);
            if (last == before || (last.x - 1 == before.x && last.y == before.y))
                DropLastVertex(view);
        }
        break;
    }
    End(view);
}

void CPolyTool::End(CNetworkView* view)
{
    m_pDrawObj = nullptr;
    g_currentTool = Selection;
    if (view->m_pCurAction)
        view->m_pCurAction->Done();
}
