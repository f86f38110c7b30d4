#pragma once

#include "view/CDrawTool.h"

// The tools that make an object of the rectangle family by dragging (rectangle, round
// rectangle, ellipse, arc, halo, line, arrow) and clip art by a click and the picture dialog.
// A drag makes its object once the mouse has gone 5 pixels from the press, then resizes it by
// its lower right handle; a press released sooner makes nothing. The tool stays current for
// the next object.
class CRectTool : public CDrawTool {
public:
    explicit CRectTool(int drawShape);

    void OnLButtonDown(CNetworkView* view, unsigned flags, CPoint point) override;
    void OnLButtonUp(CNetworkView* view, unsigned flags, CPoint point) override;
    void OnMouseMove(CNetworkView* view, unsigned flags, CPoint point) override;

    // How far the mouse goes before a drag makes its object, in pixels on either axis.
    static constexpr int DragThreshold = 5;

private:
    void OnClipArt(CNetworkView* view, CPoint logical);
    void CreateShape(CNetworkView* view);

    // A press that has not yet gone far enough to make its object.
    bool m_bPending = false;
    CPoint m_pressLogical;
};
