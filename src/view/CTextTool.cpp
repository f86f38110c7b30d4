#include "view/CTextTool.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawText.h"
#include "objects/DefaultProperties.h"
#include "undo/CAddAction.h"
#include "view/CNetworkView.h"
#include "view/CSelectTool.h"

CTextTool::CTextTool() : CDrawTool(Text) {}

void CTextTool::OnLButtonDown(CNetworkView* view, unsigned flags, CPoint point)
{
    const CPoint logical = BeginCreation(view, flags, point);

    const double diameter = view->GetDocument()->GetOuterDia() * 300;
    CRect position(logical.x, logical.y, logical.x + 1, logical.y + 1);
    if ((g_defaultProperties.m_textPathKind & 0xFF) != 0) {
        // A curved text runs round the disc's centre, wherever the click was.
        const int half = int(diameter / 2);
        position = CRect(-half, half, half, -half);
    }
    AddObject(view, std::make_unique<CDrawText>(position))->Done();
}

void CTextTool::OnLButtonUp(CNetworkView* view, unsigned flags, CPoint point)
{
    CSelectTool::Instance().OnLButtonUp(view, flags, point);
    g_currentTool = view->Modifiers().testFlag(Qt::ControlModifier) ? Text : Selection;
}

void CTextTool::OnMouseMove(CNetworkView* view, unsigned flags, CPoint point)
{
    view->SetToolCursor(Qt::CrossCursor);
    CSelectTool::Instance().OnMouseMove(view, flags, point);
}
