#pragma once

#include "view/CDrawTool.h"

// Places a text by a click: a straight text where the click falls, a curved one round the
// whole disc whatever the click point. With Ctrl held at the release the tool stays, so that
// several texts can be placed in a row.
class CTextTool : public CDrawTool {
public:
    CTextTool();

    void OnLButtonDown(CNetworkView* view, unsigned flags, CPoint point) override;
    void OnLButtonUp(CNetworkView* view, unsigned flags, CPoint point) override;
    void OnMouseMove(CNetworkView* view, unsigned flags, CPoint point) override;
};
