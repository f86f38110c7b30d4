#pragma once

#include "view/CDrawTool.h"

#include <cstdint>

class CDrawPoly;

// Makes a poly object by clicks, and by drags that lay a vertex about every 20 units. The
// object is added at the first press and grows until a double-click or a right click ends it,
// by the rules of its kind. A gesture survives a change of tool: a later press goes on with it.
class CPolyTool : public CDrawTool {
public:
    // How a double-click or a right click ends the object.
    //  A: the last vertex dropped when more than 3 remain; fewer than 3 keep the gesture going.
    //  B: fewer than 3 keep the gesture going; otherwise the last vertex is dropped.
    //  C: a last vertex that repeats the one before (or lies one unit right of it) is dropped.
    //  AllVertices: from 3 vertices on, ends with all of them; fewer do nothing.
    enum class Ending { A, B, C, AllVertices };

    // The polygon tool.
    CPolyTool();

    void OnLButtonDown(CNetworkView* view, unsigned flags, CPoint point) override;
    void OnLButtonUp(CNetworkView*, unsigned, CPoint) override {}
    void OnMouseMove(CNetworkView* view, unsigned flags, CPoint point) override;
    void OnLButtonDblClk(CNetworkView* view, unsigned flags, CPoint point) override;
    void OnRButtonDown(CNetworkView* view, unsigned flags, CPoint point) override;
    void OnCancel() override;
    // The gesture ends when its object leaves the document.
    void OnObjectRemoved(CNetworkView* view, CDrawObj* object) override;

    // A drag lays a vertex when it is further than this from the last one, in logical units.
    static constexpr double VertexSpacing = 20.0;

protected:
    CPolyTool(int drawShape, std::uint8_t polyKind, Ending doubleClick, Ending rightClick);

private:
    void EndBy(Ending ending, CNetworkView* view);
    void End(CNetworkView* view);
    void DropLastVertex(CNetworkView* view);
    void FollowPoint(CNetworkView* view, CPoint point, CPoint logical);

    CDrawPoly* m_pDrawObj = nullptr;
    std::uint8_t m_polyKind;
    Ending m_doubleClick;
    Ending m_rightClick;
};
