#include "view/CZoomTool.h"

#include "view/CNetworkView.h"

CZoomTool::CZoomTool() : CDrawTool(Zoom) {}

void CZoomTool::OnLButtonUp(CNetworkView* view, unsigned, CPoint point)
{
    CPoint logical = point;
    if (view->GetZoomMode() == CZoomView::ZoomInMode) {
        view->ViewDPtoLP(logical);
        view->ZoomIn(&logical, Factor);
    } else if (view->GetZoomMode() == CZoomView::ZoomOutMode) {
        view->ViewDPtoLP(logical);
        view->ZoomOut(&logical, Factor);
    }
}

void CZoomTool::OnMouseMove(CNetworkView* view, unsigned, CPoint)
{
    if (view->GetZoomMode() == CZoomView::ZoomOutMode)
        view->SetToolCursor(CZoomView::ZoomOutCursor());
    else if (view->GetZoomMode() == CZoomView::ZoomInMode)
        view->SetToolCursor(CZoomView::ZoomInCursor());
}
