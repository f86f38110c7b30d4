#include "view/CDrawTool.h"

#include "objects/CDrawObj.h"
#include "undo/CAddAction.h"
#include "view/CClosedCurveTool.h"
#include "view/CCurveTool.h"
#include "view/CNetworkView.h"
#include "view/CPolyTool.h"
#include "view/CRectTool.h"
#include "view/CScribbleTool.h"
#include "view/CSelectTool.h"
#include "view/CTextTool.h"
#include "view/CZoomTool.h"

int g_currentTool = CDrawTool::Selection;

CPoint CDrawTool::c_down;
CPoint CDrawTool::c_last;
unsigned CDrawTool::c_nDownFlags = 0;
int CDrawTool::selectMode = CDrawTool::None;
int CDrawTool::nDragHandle = 0;
CPoint CDrawTool::lastPoint;

CDrawTool::CDrawTool(int drawShape) : m_drawShape(drawShape)
{
    Tools().push_back(this);
}

std::vector<CDrawTool*>& CDrawTool::Tools()
{
    static std::vector<CDrawTool*> tools;
    return tools;
}

CDrawTool* CDrawTool::FindTool(int number)
{
    // Made once, in the order the lookup walks them.
    static CSelectTool selectTool;
    static CRectTool rectTool(Rectangle);
    static CRectTool roundRectTool(RoundRectangle);
    static CRectTool ellipseTool(Ellipse);
    static CRectTool arcTool(Arc);
    static CRectTool haloTool(Halo);
    static CPolyTool polyTool;
    static CTextTool textTool;
    static CRectTool lineTool(Line);
    static CRectTool arrowTool(Arrow);
    static CCurveTool curveTool;
    static CScribbleTool scribbleTool;
    static CClosedCurveTool closedCurveTool;
    static CZoomTool zoomTool;
    static CRectTool clipArtTool(ClipArt);
    for (CDrawTool* tool : Tools()) {
        if (tool->m_drawShape == number)
            return tool;
    }
    return nullptr;
}

CPoint CDrawTool::BeginCreation(CNetworkView* view, unsigned flags, CPoint point)
{
    selectMode = None;
    nDragHandle = 0;
    CDrawTool::OnLButtonDown(view, flags, point);
    view->ClientToDoc(point);
    return point;
}

CAddAction* CDrawTool::AddObject(CNetworkView* view, std::unique_ptr<CDrawObj> object)
{
    view->CloseCurrentAction();
    auto* action = new CAddAction(view, 61450, std::move(object));
    view->SetCurrentAction(action);
    action->Do();
    return action;
}

void CDrawTool::ObjectRemoved(CNetworkView* view, CDrawObj* object)
{
    FindTool(Selection); // makes the tools
    for (CDrawTool* tool : Tools())
        tool->OnObjectRemoved(view, object);
}

void CDrawTool::OnLButtonDown(CNetworkView* view, unsigned flags, CPoint point)
{
    view->SetCapture();
    c_nDownFlags = flags;
    c_down = point;
    c_last = point;
}

void CDrawTool::OnLButtonUp(CNetworkView* view, unsigned, CPoint point)
{
    view->ReleaseCapture();
    if (point == c_down)
        g_currentTool = Selection;
}

void CDrawTool::OnMouseMove(CNetworkView* view, unsigned, CPoint point)
{
    c_last = point;
    view->SetToolCursor(Qt::ArrowCursor);
}

void CDrawTool::OnCancel()
{
    g_currentTool = Selection;
}
