#include "view/CRectTool.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawRect.h"
#include "undo/CAddAction.h"
#include "view/CNetworkView.h"
#include "view/CSelectTool.h"

#include <cstdlib>

CRectTool::CRectTool(int drawShape) : CDrawTool(drawShape) {}

void CRectTool::OnLButtonDown(CNetworkView* view, unsigned flags, CPoint point)
{
    const CPoint logical = BeginCreation(view, flags, point);
    if (m_drawShape == ClipArt) {
        OnClipArt(view, logical);
        return;
    }
    // The press waits for the mouse to move away before it makes anything; the moves and the
    // release that come meanwhile decide (no nested event loop: the view stays responsive).
    m_bPending = true;
    m_pressLogical = logical;
}

void CRectTool::CreateShape(CNetworkView* view)
{
    auto object = std::make_unique<CDrawRect>(CRect(m_pressLogical.x, m_pressLogical.y, m_pressLogical.x, m_pressLogical.y));
    object->m_shape = m_drawShape;
    if (m_drawShape == Ellipse || m_drawShape == Arc || m_drawShape == Halo) {
        // Ellipses, arcs and halos start as circles.
        object->m_shape |= CDrawRect::AspectLock;
        object->m_aspect = 1.0;
    }
    AddObject(view, std::move(object))->Done();
    selectMode = Size;
    nDragHandle = 5;
    lastPoint = m_pressLogical;
}

void CRectTool::OnMouseMove(CNetworkView* view, unsigned flags, CPoint point)
{
    if (m_bPending) {
        if (std::abs(point.x - c_down.x) < DragThreshold && std::abs(point.y - c_down.y) < DragThreshold)
            return;
        m_bPending = false;
        CreateShape(view);
    }
    view->SetToolCursor(Qt::CrossCursor);
    CSelectTool::Instance().OnMouseMove(view, flags, point);
}

void CRectTool::OnLButtonUp(CNetworkView* view, unsigned flags, CPoint point)
{
    if (m_bPending) {
        // Released before the drag began: nothing is made, and the selection tool's release
        // decides the tool.
        m_bPending = false;
        CSelectTool::Instance().OnLButtonUp(view, flags, point);
        return;
    }
    if (view->m_pCurAction)
        view->m_pCurAction->Done();
    CSelectTool::Instance().OnLButtonUp(view, flags, point);
}

void CRectTool::OnClipArt(CNetworkView* view, CPoint logical)
{
    const QString path = view->AskClipArtFile();
    // The dialog took the mouse; the release it swallowed would have given it back.
    view->ReleaseCapture();
    if (path.isEmpty())
        return;
    auto object = std::make_unique<CDrawRect>(CRect(logical.x, logical.y, logical.x, logical.y));
    object->m_pictureFile = path;
    object->m_fillKind = 2;
    object->m_wrapMode = 4;
    object->m_pictureScale = 1;
    object->m_hatchStyle = -1;
    object->m_shape = CDrawRect::AspectLock;
    object->m_flags &= ~1;
    object->FitToPicture();
    CDrawRect* added = object.get();
    AddObject(view, std::move(object))->Done();
    view->InvalidateObject(added);
    g_currentTool = Selection;
}
