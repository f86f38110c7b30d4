#pragma once

#include "view/CDrawTool.h"

// Zooms in or out by 1.25 around the point of each click, as the view's zoom mode says. It
// stays current until another tool is chosen; keys are ignored.
class CZoomTool : public CDrawTool {
public:
    CZoomTool();

    void OnLButtonDown(CNetworkView*, unsigned, CPoint) override {}
    void OnLButtonUp(CNetworkView* view, unsigned flags, CPoint point) override;
    void OnMouseMove(CNetworkView* view, unsigned flags, CPoint point) override;

    static constexpr double Factor = 1.25;
};
