#pragma once

#include "view/CDrawTool.h"

// The tool that is current by default: selects by click, Shift-click and rubber band, moves
// the selection, resizes one object by its handles, and nudges with the arrow keys. The
// creation tools finish their drags through it.
class CSelectTool : public CDrawTool {
public:
    CSelectTool();

    void OnLButtonDown(CNetworkView* view, unsigned flags, CPoint point) override;
    void OnLButtonDblClk(CNetworkView* view, unsigned flags, CPoint point) override;
    void OnLButtonUp(CNetworkView* view, unsigned flags, CPoint point) override;
    void OnMouseMove(CNetworkView* view, unsigned flags, CPoint point) override;
    void OnKeyDown(CNetworkView* view, int key) override;

    // The selection tool's own instance, through which the other tools finish their drags.
    static CSelectTool& Instance();

private:
    void BeginResize(CNetworkView* view, CPoint logical);

    // Set when a move or resize drag has ended.
    bool m_bDragEnded = false;
};
