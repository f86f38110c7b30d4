#include "view/CSelectTool.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawPoly.h"
#include "undo/CMoveAction.h"
#include "undo/CMoveSingleAction.h"
#include "undo/CSizeAction.h"
#include "view/CNetworkView.h"

#include <QRect>

namespace {

constexpr std::uint32_t ResizeLabel = 61453;
constexpr std::uint32_t MoveLabel = 61454;
constexpr std::uint32_t ArrowMoveLabel = 61479;

CRect normalised(CPoint a, CPoint b)
{
    return CRect(a.x, a.y, b.x, b.y).Normalized();
}

} // namespace

CSelectTool::CSelectTool() : CDrawTool(Selection) {}

CSelectTool& CSelectTool::Instance()
{
    return *static_cast<CSelectTool*>(FindTool(Selection));
}

void CSelectTool::OnLButtonDown(CNetworkView* view, unsigned flags, CPoint point)
{
    CPoint logical = point;
    view->ClientToDoc(logical);
    selectMode = None;

    if (view->m_selection.size() == 1) {
        CDrawObj* object = view->m_selection.front();
        nDragHandle = object->HitTest(logical, view, true);
        if (auto* poly = dynamic_cast<CDrawPoly*>(object)) {
            if (nDragHandle == poly->m_selectedPoint) {
                BeginResize(view, logical);
            } else if (nDragHandle < 1) {
                if (poly->m_selectedPoint != -1) {
                    poly->m_selectedPoint = -1;
                    view->InvalidateObject(poly);
                }
            } else {
                poly->m_selectedPoint = nDragHandle;
                view->InvalidateObject(poly);
                BeginResize(view, logical);
            }
        } else if (nDragHandle != 0) {
            BeginResize(view, logical);
        }
    }

    if (selectMode == None) {
        if (CDrawObj* object = view->GetDocument()->ObjectAt(logical)) {
            selectMode = Move;
            if (!view->IsSelected(object))
                view->Select(object, (flags & MK_SHIFT) != 0);
        }
    }

    if (selectMode == None) {
        if (!(flags & MK_SHIFT))
            view->Select(nullptr, false);
        selectMode = NetSelect;
        view->DrawFocusRect(CRect(point.x, point.y, point.x, point.y));
    }

    lastPoint = logical;
    CDrawTool::OnLButtonDown(view, flags, point);
}

void CSelectTool::BeginResize(CNetworkView* view, CPoint logical)
{
    // Only once the action before has closed: the first resize of a fresh document, or one
    // right after an arrow-key move, is not recorded. Kept as users have always had it.
    if (view->m_pCurAction && view->m_pCurAction->IsDone()) {
        auto* action = new CSizeAction(view, ResizeLabel, nDragHandle, logical, view->m_selection.front());
        view->SetCurrentAction(action);
        action->Do();
    }
    selectMode = Size;
}

void CSelectTool::OnLButtonDblClk(CNetworkView* view, unsigned flags, CPoint point)
{
    if (!(flags & MK_SHIFT))
        return;
    CPoint logical = point;
    view->ClientToDoc(logical);
    if (CDrawObj* object = view->GetDocument()->ObjectAt(logical))
        view->Deselect(object);
}

void CSelectTool::OnMouseMove(CNetworkView* view, unsigned flags, CPoint point)
{
    if (view->HasCapture() && selectMode != NetSelect) {
        CPoint logical = point;
        view->ClientToDoc(logical);
        const CPoint delta(logical.x - lastPoint.x, logical.y - lastPoint.y);
        // A copy: moving may not change the selection, but a resize could reach the panels.
        const CDrawObjPtrList selection = view->m_selection;
        for (CDrawObj* object : selection) {
            if (selectMode == Move && (delta.x != 0 || delta.y != 0)) {
                // Made at the first real step, so that a click without a drag leaves no action.
                if (!view->m_pCurAction || view->m_pCurAction->IsDone())
                    view->SetCurrentAction(new CMoveAction(view, MoveLabel, view->m_selection));
                CRect position = object->GetRect();
                position.OffsetRect(delta.x, delta.y);
                object->MoveTo(position, view);
            } else if (selectMode == Size && selection.size() == 1 && nDragHandle != 0) {
                object->MoveHandleTo(nDragHandle, logical, view);
            }
        }
        lastPoint = logical;
        if (selectMode == Size && g_currentTool == Selection) {
            c_last = point;
            view->SetToolCursor(view->m_selection.empty() ? Qt::ArrowCursor
                                                          : view->m_selection.front()->GetHandleCursor(nDragHandle));
        } else {
            c_last = point;
            if (g_currentTool == Selection)
                CDrawTool::OnMouseMove(view, flags, point);
        }
        return;
    }

    if (view->HasCapture() && selectMode == NetSelect) {
        view->DrawFocusRect(normalised(c_down, c_last));
        view->DrawFocusRect(normalised(c_down, point));
        CDrawTool::OnMouseMove(view, flags, point);
        return;
    }

    if (g_currentTool == Selection && view->m_selection.size() == 1) {
        CPoint logical = point;
        view->ClientToDoc(logical);
        CDrawObj* object = view->m_selection.front();
        if (const int handle = object->HitTest(logical, view, true)) {
            view->SetToolCursor(object->GetHandleCursor(handle));
            return;
        }
    }
    if (g_currentTool == Selection)
        CDrawTool::OnMouseMove(view, flags, point);
}

void CSelectTool::OnLButtonUp(CNetworkView* view, unsigned flags, CPoint point)
{
    if (view->m_pCurAction && view->m_pCurAction->GetID() == MoveLabel && !view->m_pCurAction->IsDone())
        view->m_pCurAction->Do();

    if (view->HasCapture()) {
        if (selectMode == NetSelect) {
            const CRect band = normalised(c_down, c_last);
            view->DrawFocusRect(band);
            view->SelectWithinRect(band, true);
        } else if (selectMode != None) {
            view->GetDocument()->UpdateAllViews(view, 0, nullptr);
            m_bDragEnded = true;
        }
    }
    CDrawTool::OnLButtonUp(view, flags, point);
}

void CSelectTool::OnKeyDown(CNetworkView* view, int key)
{
    if (key < Qt::Key_Left || key > Qt::Key_Down)
        return;
    const CDrawObjPtrList selection = view->m_selection;
    for (CDrawObj* object : selection) {
        // Left open by its Do, so that a run of presses is one undo step; it covers only the
        // first object, as it always has.
        if (!view->m_pCurAction || view->m_pCurAction->IsDone()) {
            auto* action = new CMoveSingleAction(view, ArrowMoveLabel, object);
            view->SetCurrentAction(action);
            action->Do();
        }
        CRect position = object->GetRect();
        switch (key) {
        case Qt::Key_Left: position.OffsetRect(-1, 0); break;
        case Qt::Key_Up: position.OffsetRect(0, 1); break;
        case Qt::Key_Right: position.OffsetRect(1, 0); break;
        default: position.OffsetRect(0, -1); break;
        }
        object->MoveTo(position, view);
    }
}
