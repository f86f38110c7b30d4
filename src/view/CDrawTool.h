#pragma once

#include "platform/CPoint.h"

#include <cstdint>
#include <memory>
#include <vector>

class CAddAction;
class CDrawObj;
class CNetworkView;

// The number of the current tool: 12 selection, 13 zoom, 11 text, 14 clip art, 0 to 10 the
// shapes (see CDrawTool::Number).
extern int g_currentTool;

// The mouse flags a tool is given with each press, move and release.
enum MouseFlags : unsigned {
    MK_LBUTTON = 0x1,
    MK_RBUTTON = 0x2,
    MK_SHIFT = 0x4,
    MK_CONTROL = 0x8,
};

// A mouse tool. The view hands each press, move and release of the canvas to the tool of
// g_currentTool; the tools live as long as the program and share the state of the drag that
// is running. Points are client pixels of the view.
class CDrawTool {
public:
    enum Number {
        Rectangle = 0,
        RoundRectangle = 1,
        Ellipse = 2,
        Arc = 3,
        Halo = 4,
        Polygon = 5,
        Curve = 6,
        ClosedCurve = 7,
        Polyline = 8,
        Line = 9,
        Arrow = 10,
        Text = 11,
        Selection = 12,
        Zoom = 13,
        ClipArt = 14,
    };
    enum SelectMode { None = 0, NetSelect = 1, Move = 2, Size = 3 };

    explicit CDrawTool(int drawShape);
    CDrawTool(const CDrawTool&) = delete;
    CDrawTool& operator=(const CDrawTool&) = delete;
    virtual ~CDrawTool() = default;

    virtual void OnLButtonDown(CNetworkView* view, unsigned flags, CPoint point);
    virtual void OnRButtonDown(CNetworkView*, unsigned, CPoint) {}
    virtual void OnLButtonDblClk(CNetworkView*, unsigned, CPoint) {}
    virtual void OnLButtonUp(CNetworkView* view, unsigned flags, CPoint point);
    virtual void OnMouseMove(CNetworkView* view, unsigned flags, CPoint point);
    virtual void OnKeyDown(CNetworkView*, int) {}
    // Ctrl with an arrow key: nothing, in every tool.
    virtual void OnKeyUp(CNetworkView*, int) {}
    virtual void OnCancel();
    // An object left the document (an undo took it away); a tool that works on it lets go.
    virtual void OnObjectRemoved(CNetworkView*, CDrawObj*) {}
    static void ObjectRemoved(CNetworkView* view, CDrawObj* object);

    // The start of a creation tool's press: no drag running, the base press, and the point in
    // label units.
    CPoint BeginCreation(CNetworkView* view, unsigned flags, CPoint point);
    // Adds a new object as one step of the history: the open step closed, the new one begun
    // and done, and left open for the caller to close.
    static CAddAction* AddObject(CNetworkView* view, std::unique_ptr<CDrawObj> object);

    // The first tool with the number, or null. Tools are made on first use, in their order.
    static CDrawTool* FindTool(int number);

    int m_drawShape;

    // The drag that is running, shared by all tools.
    static CPoint c_down;
    static CPoint c_last;
    static unsigned c_nDownFlags;
    static int selectMode;
    static int nDragHandle;
    static CPoint lastPoint;

private:
    static std::vector<CDrawTool*>& Tools();
};
